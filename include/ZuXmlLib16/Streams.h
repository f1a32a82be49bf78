#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "ZuXmlLib16/BinaryData.h"
#include "ZuXmlLib16/Export.h"
#include "ZuXmlLib16/InstanceMonitor.h"
#include "ZuXmlLib16/TextRef.h"

namespace ZuXmlLib16 {

/// Utf8 gives UTF-8. Utf16 and Wide both give wide characters of four bytes each in host order, in
/// files behind the two bytes FF FE; they differ in the XML declaration only. Unknown cannot be
/// encoded.
enum class XmlEncoding : std::int32_t { Unknown, Utf8, Utf16, Wide };

/// Framing of compressed data; values other than these count as None.
enum class CompressionType : std::int32_t { None, Gzip, Zlib };

/// A text under construction, held in blocks so that what was written is never moved. Text ends at
/// its first NUL, whatever the form it is appended in.
class ZUXMLLIB16_API CStringBuffer : public CInstanceMonitor {
 public:
  CStringBuffer();
  /// @param blockSize  bytes of a block, one of which is kept for the terminator; at least 2.
  explicit CStringBuffer(std::size_t blockSize);
  CStringBuffer(const CStringBuffer&) = delete;
  CStringBuffer& operator=(const CStringBuffer&) = delete;
  ~CStringBuffer() override;

  void Append(const char* text);
  void Append(const std::string& text) { Append(text.c_str()); }
  void Append(char character);
  /// @param text  length characters, none of them NUL.
  void Append(const char* text, std::size_t length);
  /// Room for at least size characters at the end, to be filled and then made part of the text by
  /// Commit. Null when the current block has less left: Append then goes on in a new block.
  char* Room(std::size_t size);
  /// @param size  at most what the last Room granted, with nothing appended since.
  void Commit(std::size_t size) { m_next += size; }
  void SetText(const char* text);

  /// The whole text, NUL-terminated, valid until the next change. Joins the blocks into one.
  const char* GetText() const;
  /// A copy of the whole text; the blocks stay as they are.
  std::string CopyText() const;
  /// Appends the whole text to a string.
  void CopyTo(std::string& out) const;
  /// @param out  at least GetLength() characters; gets no terminator.
  void CopyTo(char* out) const;
  std::size_t GetLength() const { return m_lengthBefore + Used(); }

  /// Drops the text; a single block is kept for the text to come.
  void Empty();
  /// Drops the text and all blocks.
  void Clear();

 private:
  struct FreeBlock {
    std::size_t size;
    void operator()(char* text) const;
  };
  struct Block {
    std::unique_ptr<char, FreeBlock> text;  // capacity + 1 characters
    std::size_t capacity;
  };

  std::size_t Used() const { return static_cast<std::size_t>(m_next - m_start); }
  std::size_t Left() const { return static_cast<std::size_t>(m_end - m_next); }
  static Block NewBlock(std::size_t capacity);
  void AddBlock();
  void AppendAcrossBlocks(const char* text, std::size_t length);
  void JoinBlocks() const;
  void WriteInto(const Block& block, std::size_t used) const;
  template <class Sink>
  void ForEachBlock(Sink sink) const;

  // GetText changes how the text is held, not the text. All blocks but the last are full.
  mutable std::vector<Block> m_blocks;
  mutable char* m_start = nullptr;  // of the last block
  mutable char* m_next = nullptr;
  mutable char* m_end = nullptr;
  mutable std::size_t m_lengthBefore = 0;  // of the text before the last block
  std::size_t m_blockCapacity;
};

/// Text output in memory, in the local character set. Used by one thread at a time.
class ZUXMLLIB16_API CTextStream : public CInstanceMonitor {
 public:
  CTextStream();
  explicit CTextStream(XmlEncoding encoding);
  CTextStream(const char* className, XmlEncoding encoding);
  CTextStream(const CTextStream&) = delete;
  CTextStream& operator=(const CTextStream&) = delete;

  // The order of the virtual operations is binary interface.
  ~CTextStream() override;
  /// Starts anew with an empty text.
  virtual void Open();
  virtual void Close();
  virtual void Flush();

  void Append(const char* text) { m_buffer.Append(text); }
  void Append(const std::string& text) { m_buffer.Append(text); }
  void Append(char character) { m_buffer.Append(character); }
  /// These three as in CStringBuffer.
  void Append(const char* text, std::size_t length) { m_buffer.Append(text, length); }
  char* Room(std::size_t size) { return m_buffer.Room(size); }
  void Commit(std::size_t size) { m_buffer.Commit(size); }

  std::size_t GetLength() const { return m_buffer.GetLength(); }
  const char* GetText() const { return m_buffer.GetText(); }
  std::string CopyText() const { return m_buffer.CopyText(); }
  XmlEncoding GetEncoding() const { return m_encoding; }
  /// The text in the stream's encoding. What is invalid in the local character set becomes "?".
  /// @throws CZuException  the encoding is unknown.
  CBinaryData GetEncodedStream() const;

 protected:
  CStringBuffer m_buffer;

 private:
  CBinaryData GetRepairedText() const;

  XmlEncoding m_encoding;
};

namespace detail {

struct FileCloser {
  void operator()(std::FILE* file) const { std::fclose(file); }
};
/// Closes the file; an owner that has written closes it by hand, since that may still fail.
using FilePtr = std::unique_ptr<std::FILE, FileCloser>;

}  // namespace detail

/// Text output into a file. Destroying it closes the file without writing what was not flushed.
class ZUXMLLIB16_API CFileTextStream : public CTextStream {
 public:
  CFileTextStream(CTextRef path, XmlEncoding encoding);
  ~CFileTextStream() override;

  /// Creates or empties the file and writes the byte order mark of the encoding.
  /// @throws CZuException  the file cannot be written.
  void Open() override;
  /// Flushes and closes.
  /// @throws CZuException  as Flush; the file is closed all the same.
  void Close() override;
  /// Writes the buffered text and empties the buffer. The text must not end inside of a character.
  /// Does nothing while no file is open.
  /// @throws CZuException  the write failed (the file is then closed), or the encoding is unknown.
  void Flush() override;

 private:
  void Write(const void* data, std::size_t length);

  std::string m_path;
  std::string m_staging;  // kept between flushes for its memory
  detail::FilePtr m_file;
};

/// Byte output in memory.
class ZUXMLLIB16_API CBinaryStream : public CInstanceMonitor {
 public:
  CBinaryStream();
  explicit CBinaryStream(const char* className);
  explicit CBinaryStream(const CBinaryData& data);
  CBinaryStream(const char* className, const CBinaryData& data);

  void Append(unsigned char value) { m_data.Append(value); }
  void Append(const CBinaryData& data) { m_data.Append(data); }
  void Append(const unsigned char* data, unsigned long length) { m_data.Append(data, length); }
  CBinaryData GetBinaryStream() const { return m_data; }

 protected:
  CBinaryData m_data;
};

/// Bytes that are written to a file in one go, as they are.
class ZUXMLLIB16_API CFileBinaryStream : public CBinaryStream {
 public:
  CFileBinaryStream(CTextRef path, XmlEncoding encoding);
  CFileBinaryStream(CTextRef path, XmlEncoding encoding, const CBinaryData& data);

  /// Writes the byte order mark of the encoding and the bytes. There must be some.
  /// @throws CZuException  the file cannot be written, or there are no bytes; the file then exists.
  void ToFile();

 private:
  std::string m_path;
  XmlEncoding m_encoding;
};

inline void CStringBuffer::Append(const char* text, std::size_t length) {
  // A text that fills the block takes the other way, so that memcpy never sees the null of no
  // block.
  if (length < Left()) {
    // NOLINTNEXTLINE(clang-analyzer-core.NonNullParamChecker): without a block nothing is left
    std::memcpy(m_next, text, length);
    m_next += length;
  } else {
    AppendAcrossBlocks(text, length);
  }
}

inline void CStringBuffer::Append(const char* text) {
  if (text != nullptr) Append(text, std::strlen(text));
}

inline void CStringBuffer::Append(char character) {
  if (character != '\0') Append(&character, 1);
}

inline char* CStringBuffer::Room(std::size_t size) {
  if (m_next == nullptr) AddBlock();
  return size <= Left() ? m_next : nullptr;
}

}  // namespace ZuXmlLib16
