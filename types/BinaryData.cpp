#include "ZuXmlLib16/BinaryData.h"

#include <emmintrin.h>

#include <algorithm>
#include <cstring>
#include <limits>
#include <new>
#include <utility>

#include "core/Errors.h"
#include "types/Base64.h"

namespace ZuXmlLib16 {
namespace {

using CDataHolder = CBinaryData::CDataHolder;
using Bytes = std::unique_ptr<unsigned char[]>;

constexpr std::uint64_t kSmallestCopy = 8192;

Bytes NewBytes(std::uint64_t count) {
  return Bytes(new unsigned char[count]);
}

/// Twice the length, so that a run of small appends seldom moves the bytes.
std::uint64_t RoomyCapacity(std::uint64_t length) {
  if (length > std::numeric_limits<std::uint64_t>::max() / 2) throw std::bad_alloc();
  return 2 * length;
}

CDataHolder* HolderOf(Bytes adopted, unsigned long length) {
  if (length == 0) return nullptr;
  auto* const holder = new CDataHolder(adopted.get(), length, true);
  static_cast<void>(adopted.release());
  return holder;
}

CDataHolder* HolderOfCopy(const unsigned char* data, unsigned long length) {
  if (data == nullptr || length == 0) return nullptr;
  return new CDataHolder(const_cast<unsigned char*>(data), length, false);  // only read
}

const unsigned char* AsBytes(const char* text) {
  return reinterpret_cast<const unsigned char*>(text);
}

unsigned long LengthOf(const char* text) {
  return text != nullptr ? std::strlen(text) : 0;
}

constexpr char kHexDigits[] = "0123456789ABCDEF";
constexpr unsigned int kNoHexDigit = 16;

unsigned int HexValue(char digit) {
  if (digit >= '0' && digit <= '9') return static_cast<unsigned int>(digit - '0');
  const char lower = static_cast<char>(digit | 0x20);
  if (lower >= 'a' && lower <= 'f') return static_cast<unsigned int>(lower - 'a' + 10);
  return kNoHexDigit;
}

unsigned int CheckedHexValue(char digit) {
  const unsigned int value = HexValue(digit);
  if (value == kNoHexDigit) ThrowInvalidHexCharacter(digit);
  return value;
}

__m128i HexDigitsOf(__m128i nibbles) {
  const __m128i beyondNine = _mm_cmpgt_epi8(nibbles, _mm_set1_epi8(9));
  const __m128i toLetters = _mm_and_si128(beyondNine, _mm_set1_epi8('A' - '9' - 1));
  return _mm_add_epi8(_mm_add_epi8(nibbles, _mm_set1_epi8('0')), toLetters);
}

void EncodeHexBlock(const unsigned char* data, char* out) {
  const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(data));
  const __m128i lowBits = _mm_set1_epi8(0x0F);
  const __m128i high = _mm_and_si128(_mm_srli_epi16(bytes, 4), lowBits);
  const __m128i low = _mm_and_si128(bytes, lowBits);
  auto* const target = reinterpret_cast<__m128i*>(out);
  _mm_storeu_si128(target, HexDigitsOf(_mm_unpacklo_epi8(high, low)));
  _mm_storeu_si128(target + 1, HexDigitsOf(_mm_unpackhi_epi8(high, low)));
}

__m128i AtMost(__m128i unsignedBytes, char limit) {
  return _mm_cmpeq_epi8(_mm_min_epu8(unsignedBytes, _mm_set1_epi8(limit)), unsignedBytes);
}

/// Eight bytes from sixteen digits, one in each 16-bit lane.
/// @return false when there is a character that is no digit.
bool DecodeHexLanes(const char* text, __m128i& lanes) {
  const __m128i chars = _mm_loadu_si128(reinterpret_cast<const __m128i*>(text));
  const __m128i digits = _mm_sub_epi8(chars, _mm_set1_epi8('0'));
  const __m128i lower = _mm_or_si128(chars, _mm_set1_epi8(0x20));
  const __m128i letters = _mm_sub_epi8(lower, _mm_set1_epi8('a'));
  const __m128i isDigit = AtMost(digits, 9);
  const __m128i isLetter = AtMost(letters, 5);
  if (_mm_movemask_epi8(_mm_or_si128(isDigit, isLetter)) != 0xFFFF) return false;
  const __m128i fromLetters = _mm_add_epi8(letters, _mm_set1_epi8(10));
  const __m128i values =
      _mm_or_si128(_mm_and_si128(isDigit, digits), _mm_and_si128(isLetter, fromLetters));
  const __m128i both = _mm_or_si128(_mm_slli_epi16(values, 4), _mm_srli_epi16(values, 8));
  lanes = _mm_and_si128(both, _mm_set1_epi16(0xFF));
  return true;
}

/// Sixteen bytes from 32 digits.
bool DecodeHexBlock(const char* text, unsigned char* out) {
  __m128i first;
  __m128i second;
  if (!DecodeHexLanes(text, first) || !DecodeHexLanes(text + 16, second)) return false;
  _mm_storeu_si128(reinterpret_cast<__m128i*>(out), _mm_packus_epi16(first, second));
  return true;
}

Bytes DecodeHex(std::string_view text) {
  if (text.size() % 2 != 0) ThrowOddHexLength();
  Bytes bytes = NewBytes(text.size() / 2);
  std::size_t done = 0;
  while (text.size() - done >= 32 && DecodeHexBlock(text.data() + done, &bytes[done / 2]))
    done += 32;
  for (; done < text.size(); done += 2) {
    const unsigned int high = CheckedHexValue(text[done]);
    bytes[done / 2] = static_cast<unsigned char>(high << 4 | CheckedHexValue(text[done + 1]));
  }
  return bytes;
}

}  // namespace

CDataHolder::CDataHolder(unsigned char* data, unsigned long length, bool takeOwnership)
    : m_data(takeOwnership ? data : nullptr), m_length(length), m_capacity(length) {
  if (takeOwnership) return;
  m_capacity = std::max(RoomyCapacity(length), kSmallestCopy);
  m_data = NewBytes(m_capacity);
  std::copy_n(data, length, m_data.get());
}

void CDataHolder::AddRef() {
  const CZUCriticalSection::CGuard guard(m_lock);
  m_refCount.fetch_add(1, std::memory_order_relaxed);
}

void CDataHolder::Release(bool detach) {
  m_lock.Enter();
  const std::int64_t left = m_refCount.fetch_sub(1, std::memory_order_acq_rel) - 1;
  m_lock.Leave();  // a held lock must not be destroyed
  if (left > 0) {
    if (detach) ThrowSharedRelease(left);
    return;
  }
  if (detach) static_cast<void>(m_data.release());
  delete this;
}

void CDataHolder::Append(const unsigned char* data, unsigned long length) {
  const CZUCriticalSection::CGuard guard(m_lock);
  if (IsShared()) ThrowSharedAppend(m_refCount.load(std::memory_order_relaxed));
  if (length == 0) return;
  // The old array lives on until the bytes are copied, which may lie in it.
  const Bytes old = length > m_capacity - m_length ? Grow(length) : nullptr;
  std::memcpy(m_data.get() + m_length, data, length);
  m_length += length;
}

CDataHolder* CDataHolder::GetExclusiveCopy() {
  const CZUCriticalSection::CGuard guard(m_lock);
  if (!IsShared()) return this;
  auto* const copy = new CDataHolder(m_data.get(), m_length, false);
  m_refCount.fetch_sub(1, std::memory_order_acq_rel);
  return copy;
}

unsigned char& CDataHolder::SpareByte() {
  if (m_length == m_capacity) Grow(1);
  m_data[m_length] = 0;
  return m_data[m_length];
}

std::unique_ptr<unsigned char[]> CDataHolder::Grow(std::uint64_t added) {
  if (added > std::numeric_limits<std::uint64_t>::max() - m_length) throw std::bad_alloc();
  const std::uint64_t capacity = RoomyCapacity(m_length + added);
  Bytes grown = NewBytes(capacity);
  std::copy_n(m_data.get(), m_length, grown.get());
  m_capacity = capacity;
  return std::exchange(m_data, std::move(grown));
}

CBinaryData::CBinaryData(unsigned char* data, unsigned long length, bool takeOwnership)
    : m_holder(takeOwnership ? HolderOf(Bytes(data), data != nullptr ? length : 0)
                             : HolderOfCopy(data, length)) {}

CBinaryData::CBinaryData(const char* text)
    : m_holder(HolderOfCopy(AsBytes(text), LengthOf(text))) {}

CBinaryData::CBinaryData(const CBinaryData& other) : m_holder(other.m_holder) {
  if (m_holder != nullptr) m_holder->AddRef();
}

CBinaryData::CBinaryData(CBinaryData&& other) noexcept
    : m_holder(std::exchange(other.m_holder, nullptr)) {}

// NOLINTNEXTLINE(bugprone-unhandled-self-assignment): empties the value, as the header promises
CBinaryData& CBinaryData::operator=(const CBinaryData& other) {
  Clear();
  m_holder = other.m_holder;
  if (m_holder != nullptr) m_holder->AddRef();
  return *this;
}

CBinaryData& CBinaryData::operator=(CBinaryData&& other) noexcept {
  Clear();
  m_holder = std::exchange(other.m_holder, nullptr);
  return *this;
}

CBinaryData::~CBinaryData() {
  Clear();
}

void CBinaryData::Clear() {
  CDataHolder* const holder = std::exchange(m_holder, nullptr);
  if (holder != nullptr) holder->Release(false);
}

void CBinaryData::SetBuffer(const unsigned char* data, unsigned long length) {
  // Copied before the old bytes go, among which data may lie.
  CDataHolder* const holder = HolderOfCopy(data, length);
  Clear();
  m_holder = holder;
}

void CBinaryData::SetBuffer(const char* text) {
  SetBuffer(AsBytes(text), LengthOf(text));
}

void CBinaryData::Append(const unsigned char* data, unsigned long length) {
  if (data == nullptr || length == 0) return;
  if (m_holder == nullptr) {
    m_holder = HolderOfCopy(data, length);
    return;
  }
  unsigned char* const end = m_holder->Extend(length);
  if (end != nullptr) {
    std::memcpy(end, data, length);
    return;
  }
  // Bytes of this very value are looked up again in the private copy: the shared array may be gone
  // by then.
  const auto offset = reinterpret_cast<std::uintptr_t>(data) -
                      reinterpret_cast<std::uintptr_t>(m_holder->GetData());
  const bool isOwn = offset < m_holder->GetLength();
  TakeExclusiveCopy();
  m_holder->Append(isOwn ? m_holder->GetData() + offset : data, length);
}

void CBinaryData::Append(const char* text) {
  Append(AsBytes(text), LengthOf(text));
}

void CBinaryData::Append(const std::string& text) {
  Append(AsBytes(text.data()), text.size());
}

void CBinaryData::Append(const CBinaryData& other) {
  if (m_holder == nullptr) {
    *this = other;  // shares its bytes
    return;
  }
  Append(other.GetData(), other.GetLength());
}

unsigned char CBinaryData::operator[](unsigned long index) const {
  CheckIndex(index);
  return index < GetLength() ? GetData()[index] : static_cast<unsigned char>(0);
}

unsigned char& CBinaryData::operator[](unsigned long index) {
  CheckIndex(index);
  TakeExclusiveCopy();
  return index < GetLength() ? GetData()[index] : m_holder->SpareByte();
}

bool CBinaryData::operator==(const CBinaryData& other) const {
  const unsigned long length = GetLength();
  if (length != other.GetLength()) return false;
  return m_holder == other.m_holder || std::memcmp(GetData(), other.GetData(), length) == 0;
}

std::string CBinaryData::GetAsHexString(const unsigned char* data, unsigned long length) {
  if (data == nullptr) return {};
  std::string text(2 * length, '\0');
  unsigned long done = 0;
  for (; length - done >= 16; done += 16)
    EncodeHexBlock(data + done, &text[2 * done]);
  for (; done < length; ++done) {
    text[2 * done] = kHexDigits[data[done] >> 4];
    text[2 * done + 1] = kHexDigits[data[done] & 15];
  }
  return text;
}

void CBinaryData::SetAsHexString(const char* text) {
  SetAsHexString(std::string_view(text, LengthOf(text)));
}

void CBinaryData::SetAsHexString(std::string_view text) {
  const CBinaryData old(std::move(*this));  // the text may lie in it
  m_holder = HolderOf(DecodeHex(text), text.size() / 2);
}

unsigned long CBinaryData::ConvertToHexData(const char* text, unsigned char** out) {
  *out = nullptr;
  const std::string_view digits(text, LengthOf(text));
  *out = DecodeHex(digits).release();
  return digits.size() / 2;
}

std::string CBinaryData::GetAsBase64() const {
  return detail::EncodeBase64(GetData(), GetLength());
}

void CBinaryData::SetAsBase64(const char* text) {
  SetAsBase64(std::string_view(text, LengthOf(text)));
}

void CBinaryData::SetAsBase64(std::string_view text) {
  const CBinaryData old(std::move(*this));  // the text may lie in it
  if (text.empty()) return;
  Bytes bytes = NewBytes(text.size() / 4 * 3 + 3);
  const std::size_t decoded = detail::DecodeBase64(text.data(), text.size(), bytes.get());
  m_holder = HolderOf(std::move(bytes), decoded);
}

unsigned char* CBinaryData::ReleaseData() {
  if (m_holder == nullptr) return nullptr;
  TakeExclusiveCopy();
  unsigned char* const data = m_holder->GetData();
  std::exchange(m_holder, nullptr)->Release(true);
  return data;
}

void CBinaryData::TakeExclusiveCopy() {
  m_holder = m_holder->GetExclusiveCopy();
}

void CBinaryData::CheckIndex(unsigned long index) const {
  if (m_holder == nullptr || index > GetLength()) ThrowByteIndexOutOfRange(index);
}

}  // namespace ZuXmlLib16
