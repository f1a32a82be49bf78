#pragma once

#include <cstddef>

namespace ZuXmlLib16::detail {

/// Memory of small objects that are made by the hundred thousand and go together, as those of a
/// document do: cut one behind the other from slabs, which are freed when all objects in them are
/// gone. Any thread may free what another allocated.
/// @throws std::bad_alloc
void* AllocateObject(std::size_t sizeInBytes);
/// @param sizeInBytes  as allocated.
void FreeObject(void* object, std::size_t sizeInBytes) noexcept;

}  // namespace ZuXmlLib16::detail
