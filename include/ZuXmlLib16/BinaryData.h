#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "ZuXmlLib16/CriticalSection.h"
#include "ZuXmlLib16/Export.h"

namespace ZuXmlLib16 {

/// A sequence of bytes: the value of xs:hexBinary and xs:base64Binary (XML Schema Part 2, 3.2.15
/// and 3.2.16) and the byte buffer of the library. Copies share one buffer; a value that is changed
/// takes a private copy first. Values that share a buffer may be used in different threads, one
/// value in one thread at a time.
class ZUXMLLIB16_API CBinaryData {
 public:
  /// The buffer that several values may share. Made by `new`, ended by the last `Release`.
  class ZUXMLLIB16_API CDataHolder {
   public:
    /// @param data  with takeOwnership an array made by `new[]`, adopted as it is; otherwise copied
    /// into an array of at least 8192 bytes and twice the length.
    CDataHolder(unsigned char* data, unsigned long length, bool takeOwnership);
    CDataHolder(const CDataHolder&) = delete;
    CDataHolder& operator=(const CDataHolder&) = delete;

    void AddRef();
    /// Gives one reference back; the last one ends the holder and frees the array.
    /// @param detach  the caller takes the array over, which only the last reference may do.
    /// @throws CZuException  detach while others hold references; this reference is given back all
    /// the same.
    void Release(bool detach);
    /// Adds bytes at the end. They may lie in this holder's own array.
    /// @throws CZuException  the holder is shared.
    void Append(const unsigned char* data, unsigned long length);
    /// This holder when nobody shares it, otherwise a new one with a copy of the bytes, for which
    /// the caller's reference on this one is given back.
    CDataHolder* GetExclusiveCopy();

    bool IsShared() const { return m_refCount.load(std::memory_order_acquire) > 1; }
    unsigned char* GetData() const { return m_data.get(); }
    unsigned long GetLength() const { return m_length; }
    /// Lengthens the used part without allocating.
    /// @return the first new byte, not yet set; null when the holder is shared or has no room.
    unsigned char* Extend(unsigned long length);
    /// The byte behind the used ones, set to 0; the holder must not be shared.
    unsigned char& SpareByte();

   private:
    ~CDataHolder() = default;
    std::unique_ptr<unsigned char[]> Grow(std::uint64_t added);

    std::unique_ptr<unsigned char[]> m_data;
    std::uint64_t m_length;
    std::uint64_t m_capacity;
    // Changed under the lock only. Atomic, so that an owner sees without it that it is alone:
    // nobody else can then take a reference.
    std::atomic<std::int64_t> m_refCount{1};
    CZUCriticalSection m_lock;
  };

  CBinaryData() = default;
  /// @param data  with takeOwnership an array made by `new[]`, freed by this value; otherwise
  /// copied.
  CBinaryData(unsigned char* data, unsigned long length, bool takeOwnership);
  /// Holds the bytes of a NUL-terminated text, without the NUL.
  CBinaryData(const char* text);
  CBinaryData(const CBinaryData& other);
  CBinaryData(CBinaryData&& other) noexcept;
  /// Gives the own bytes up before it looks at the other's: a value assigned to itself is empty.
  CBinaryData& operator=(const CBinaryData& other);
  CBinaryData& operator=(CBinaryData&& other) noexcept;
  virtual ~CBinaryData();

  /// The bytes, or null when empty. They are shared with copies of this value: read only.
  unsigned char* GetData() const { return m_holder != nullptr ? m_holder->GetData() : nullptr; }
  unsigned long GetLength() const { return m_holder != nullptr ? m_holder->GetLength() : 0; }
  void Clear();
  void SetBuffer(const unsigned char* data, unsigned long length);
  void SetBuffer(const char* text);

  void Append(const unsigned char* data, unsigned long length);
  void Append(unsigned char value);
  void Append(char value) { Append(static_cast<unsigned char>(value)); }
  /// Appends the bytes of a NUL-terminated text, without the NUL.
  void Append(const char* text);
  void Append(const std::string& text);
  void Append(const CBinaryData& other);

  /// @param index  0 to the length, which is one more than there are bytes; the byte there is 0.
  /// @throws CZuException  larger index, or an empty value.
  unsigned char operator[](unsigned long index) const;
  /// Takes a private copy of the bytes first. What is stored at index == length is not part of the
  /// value.
  unsigned char& operator[](unsigned long index);

  bool operator==(const CBinaryData& other) const;
  bool operator!=(const CBinaryData& other) const { return !(*this == other); }

  /// Two upper-case digits a byte.
  std::string GetAsHexString() const { return GetAsHexString(GetData(), GetLength()); }
  static std::string GetAsHexString(const unsigned char* data, unsigned long length);
  /// @throws CZuException  odd length or a character that is no hexadecimal digit; the value is
  /// then empty.
  void SetAsHexString(const char* text);
  void SetAsHexString(std::string_view text);
  /// Decodes hexadecimal digits of either case.
  /// @param out  receives a new array, made by `new[]` and owned by the caller; null on failure.
  /// @return the number of bytes.
  static unsigned long ConvertToHexData(const char* text, unsigned char** out);

  /// Base64 with padding and without line breaks (RFC 4648, section 4).
  std::string GetAsBase64() const;
  /// Never fails: characters outside the alphabet are skipped, left-over bits dropped.
  void SetAsBase64(const char* text);
  void SetAsBase64(std::string_view text);

  /// Hands the bytes over and leaves the value empty; ask for the length first.
  /// @return an array that the caller frees with `delete[]`, or null when empty.
  unsigned char* ReleaseData();

 private:
  void TakeExclusiveCopy();
  void CheckIndex(unsigned long index) const;

  CDataHolder* m_holder = nullptr;  // null when there are no bytes
};

/// Moves bits between bytes and base64 digits (RFC 4648, section 4). One object serves one text.
class ZUXMLLIB16_API CBase64 {
 public:
  CBase64() = default;
  /// @param data  the bytes that Read takes bits from; must outlive this object.
  CBase64(const unsigned char* data, int length) : m_inputLength(length), m_input(data) {}

  static std::string Encode(const unsigned char* data, int length);
  /// @param text  NUL-terminated; what is not in the alphabet is skipped.
  /// @param out  room for the decoded bytes; three for every four characters of text are enough.
  /// @return the number of bytes written, INT_MAX when there are more.
  static int Decode(const char* text, unsigned char* out);
  /// Takes the next bits of the input, most significant first.
  /// @param bits  0 to 8.
  /// @param got  how many bits there still were; those missing are 0.
  /// @param position  index of the next input byte.
  unsigned int Read(int bits, int* got, int& position);
  /// Adds bits to those held and stores every full byte.
  /// @param bits  0 to 8: how many of the low bits of value count.
  /// @param position  index in out of the next byte to store.
  void Write(unsigned int value, int bits, unsigned char* out, int& position);

  static constexpr char m_sBase64Alphabet[] =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  /// The low bits, by their number.
  static constexpr unsigned int m_nMask[] = {0, 1, 3, 7, 15, 31, 63, 127, 255};

 private:
  int m_inputLength = 0;
  int m_bitCount = 0;
  std::uint64_t m_bitBuffer = 0;
  const unsigned char* m_input = nullptr;
};

inline unsigned char* CBinaryData::CDataHolder::Extend(unsigned long length) {
  if (IsShared() || length > m_capacity - m_length) return nullptr;
  unsigned char* const end = m_data.get() + m_length;
  m_length += length;
  return end;
}

inline void CBinaryData::Append(unsigned char value) {
  unsigned char* const end = m_holder != nullptr ? m_holder->Extend(1) : nullptr;
  if (end != nullptr) {
    *end = value;
  } else {
    Append(&value, 1);
  }
}

}  // namespace ZuXmlLib16
