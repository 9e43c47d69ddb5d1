#include "HXMLWInterface.h"
#include "ComMsgMgr.h"
#include "HSTStringUtils.h"
#include "HUTFileUtils.h"

#include <pugixml.hpp>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <mutex>
#include <new>
#include <sstream>
#include <vector>

#include <malloc.h>
#include <unistd.h>

namespace {

// The text of a document in another encoding, as UTF-8. The parser
// converts such documents into a buffer of its own, and the offsets it
// reports refer to that buffer; lines are counted in our copy of the
// source, so the copy must be the same UTF-8 text. Returns false when
// \p encoding needs no conversion.
bool transcodeToUtf8(const std::string &in, pugi::xml_encoding encoding, std::string &out) {
  const unsigned char *b = reinterpret_cast<const unsigned char *>(in.data());
  const std::size_t n = in.size();
  out.clear();
  out.reserve(n * 2);
  switch (encoding) {
  case pugi::encoding_latin1:
    for (std::size_t i = 0; i < n; ++i)
      HSTStringUtils::appendUtf8(out, b[i]);
    return true;
  case pugi::encoding_utf16_le:
  case pugi::encoding_utf16_be:
    out = HSTStringUtils::utf16ToUtf8(in, encoding == pugi::encoding_utf16_le);
    return true;
  case pugi::encoding_utf32_le:
  case pugi::encoding_utf32_be: {
    bool le = encoding == pugi::encoding_utf32_le;
    for (std::size_t i = 0; i + 3 < n; i += 4) {
      unsigned long u = le ? (b[i] | (b[i + 1] << 8) | (b[i + 2] << 16) |
                              (static_cast<unsigned long>(b[i + 3]) << 24))
                           : ((static_cast<unsigned long>(b[i]) << 24) | (b[i + 1] << 16) |
                              (b[i + 2] << 8) | b[i + 3]);
      if (!(i == 0 && u == 0xFEFF))
        HSTStringUtils::appendUtf8(out, u);
    }
    return true;
  }
  default:
    return false;
  }
}

} // namespace

// What a thread keeps between documents: the buffers that files are read
// and parsed in, and the parser's node pages. Loading an installation reads
// thousands of files of a few hundred KiB one after the other; given back to
// malloc, that memory tends to go back to the kernel and every next file
// pays a page fault per 4 KiB again, which costs more than the parse itself.
namespace {

// The parser asks for its node pages 32 KiB and a small header at a time;
// such requests are served from blocks of one size kept per thread.
constexpr std::size_t kPageMin = 32 * 1024;
constexpr std::size_t kPageBlock = 40 * 1024;
constexpr std::size_t kMaxCachedPages = 128; // 5 MiB a thread
constexpr std::size_t kMaxCachedBuffers = 4;
constexpr std::size_t kMaxCachedBufferBytes = std::size_t(64) << 20;

struct Buffer {
  std::unique_ptr<char[]> data;
  std::size_t capacity = 0;
};

// Set once the thread's cache is gone (at thread exit), for documents and
// pages freed after that: they go straight back to malloc.
thread_local bool t_cacheGone = false;

struct ThreadCache {
  std::vector<void *> pages;
  std::vector<Buffer> buffers;
  ~ThreadCache() {
    t_cacheGone = true;
    for (void *p : pages)
      std::free(p);
  }
};

ThreadCache *threadCache() {
  if (t_cacheGone)
    return nullptr;
  thread_local ThreadCache cache;
  return &cache;
}

void *allocatePage(std::size_t size) {
  if (size < kPageMin || size > kPageBlock)
    return std::malloc(size);
  ThreadCache *cache = threadCache();
  if (cache && !cache->pages.empty()) {
    void *p = cache->pages.back();
    cache->pages.pop_back();
    return p;
  }
  return std::malloc(kPageBlock);
}

// A block may come from another thread, or from before the cache was set
// up: whatever malloc block is large enough serves as a page.
void deallocatePage(void *p) {
  if (!p)
    return;
  ThreadCache *cache = threadCache();
  if (cache && cache->pages.size() < kMaxCachedPages) {
    const std::size_t usable = malloc_usable_size(p);
    if (usable >= kPageBlock && usable < kPageBlock + 4096) {
      cache->pages.push_back(p);
      return;
    }
  }
  std::free(p);
}

// Installed when the library is loaded, before any document exists. A
// program that installs functions of its own afterwards (to count, say)
// simply replaces these; blocks are plain malloc blocks either way.
[[maybe_unused]] const bool s_pageCacheInstalled = [] {
  pugi::set_memory_management_functions(allocatePage, deallocatePage);
  return true;
}();

// A buffer of at least \p size bytes, from the thread's spares if one is
// large enough; \p keep bytes of \p buf are carried over when it grows.
void reserveBuffer(Buffer &buf, std::size_t size, std::size_t keep = 0) {
  if (buf.capacity >= size)
    return;
  if (!buf.data)
    if (ThreadCache *cache = threadCache())
      for (auto it = cache->buffers.begin(); it != cache->buffers.end(); ++it)
        if (it->capacity >= size) {
          buf = std::move(*it);
          cache->buffers.erase(it);
          return;
        }
  std::size_t capacity = std::max(size, buf.capacity + buf.capacity / 2);
  std::unique_ptr<char[]> data(new char[capacity]);
  if (keep)
    std::memcpy(data.get(), buf.data.get(), keep);
  buf.data = std::move(data);
  buf.capacity = capacity;
}

void releaseBuffer(Buffer &buf) {
  ThreadCache *cache = threadCache();
  if (buf.data && cache && buf.capacity <= kMaxCachedBufferBytes) {
    if (cache->buffers.size() >= kMaxCachedBuffers) {
      // Keep the larger ones: they serve every smaller file too.
      auto smallest = std::min_element(
          cache->buffers.begin(), cache->buffers.end(),
          [](const Buffer &a, const Buffer &b) { return a.capacity < b.capacity; });
      if (smallest->capacity < buf.capacity)
        *smallest = std::move(buf);
    } else {
      cache->buffers.push_back(std::move(buf));
    }
  }
  buf.data.reset();
  buf.capacity = 0;
}

// Reads the whole of \p path into \p buf, under the rules of
// HUTFileUtils::openRegularFile: only a regular file, and no more than the
// limit even if the file grows while it is read. On failure says why.
bool readWholeFile(const std::string &path, Buffer &buf, std::size_t &size, std::string &error) {
  size = 0;
  std::size_t fileSize = 0;
  const int fd = HUTFileUtils::openRegularFile(path, fileSize, &error);
  if (fd < 0)
    return false;
  const std::size_t limit = HUTFileUtils::maxFileSize();
  try {
    // One byte more than the file, so that the read that finds its end
    // needs no room of its own.
    reserveBuffer(buf, fileSize + 1);
    for (;;) {
      if (size == buf.capacity) {
        if (size > limit)
          break;
        reserveBuffer(buf, std::min(limit + 1, buf.capacity * 2), size);
      }
      const ssize_t got = ::read(fd, buf.data.get() + size, buf.capacity - size);
      if (got < 0 && errno == EINTR)
        continue;
      if (got < 0) {
        error = std::strerror(errno);
        ::close(fd);
        return false;
      }
      if (got == 0)
        break;
      size += static_cast<std::size_t>(got);
    }
  } catch (const std::bad_alloc &) {
    error = "out of memory";
    ::close(fd);
    return false;
  }
  ::close(fd);
  if (size > limit) {
    error = HUTFileUtils::tooLargeText(limit);
    return false;
  }
  return true;
}

constexpr unsigned kParseOptions = pugi::parse_default | pugi::parse_doctype;

} // namespace

struct HXMLWInterface::Impl {
  // The document points into the buffer: it goes first.
  ~Impl() { clear(); }
  void clear() {
    doc.reset();
    releaseBuffer(buffer);
    size = 0;
  }
  Buffer buffer;
  std::size_t size = 0;
  pugi::xml_document doc;
  std::mutex sourceMutex;
};

HXMLWInterface::HXMLWInterface() : m_impl(new Impl) {}

HXMLWInterface::~HXMLWInterface() = default;

void HXMLWInterface::clear_() {
  m_impl->clear();
  m_hasRoot = false;
  m_root = HXMLWElement();
  m_error.clear();
  m_readFailed = false;
  m_source.clear();
  m_haveSource = false;
  m_lineStarts.clear();
}

bool HXMLWInterface::readFromFile(const std::string &path, bool report) {
  clear_();
  m_fileName = path;
  std::string why;
  if (!readWholeFile(path, m_impl->buffer, m_impl->size, why)) {
    m_error = why;
    m_readFailed = true;
    m_impl->clear();
    if (report)
      ComMsgMgr::sendMsg("xml", ComMsg::Error, "@50-2@%s%s", path, m_error);
    return false;
  }
  return parseLoaded_(report);
}

bool HXMLWInterface::readFromBuffer(const std::string &buffer, const std::string &name,
                                    bool report) {
  clear_();
  m_fileName = name;
  m_source = buffer;
  m_haveSource = true;
  reserveBuffer(m_impl->buffer, buffer.size() + 1);
  std::memcpy(m_impl->buffer.data.get(), buffer.data(), buffer.size());
  m_impl->size = buffer.size();
  return parseLoaded_(report);
}

const std::string &HXMLWInterface::source_() const {
  std::lock_guard<std::mutex> lock(m_impl->sourceMutex);
  if (!m_haveSource) {
    // Read again, under the same rules as the first time: a file that has
    // become a pipe meanwhile gives no lines rather than a hang.
    std::string text;
    HUTFileUtils::readFile(m_fileName, text, nullptr);
    m_source.swap(text);
    m_haveSource = true;
  }
  return m_source;
}

bool HXMLWInterface::parseLoaded_(bool report) {
  Impl &d = *m_impl;
  pugi::xml_parse_result result =
      d.doc.load_buffer_inplace(d.buffer.data.get(), d.size, kParseOptions, pugi::encoding_auto);
  if (result.encoding != pugi::encoding_utf8) {
    // Another encoding: parse a UTF-8 copy of the text as read instead, so
    // that offsets and the text that lines are counted in agree. (The first
    // parse may have run in our buffer, and the text must come from source.)
    std::string utf8;
    if (transcodeToUtf8(source_(), result.encoding, utf8)) {
      m_source.swap(utf8);
      m_lineStarts.clear();
      d.doc.reset();
      reserveBuffer(d.buffer, m_source.size() + 1);
      std::memcpy(d.buffer.data.get(), m_source.data(), m_source.size());
      d.size = m_source.size();
      result = d.doc.load_buffer_inplace(d.buffer.data.get(), d.size, kParseOptions,
                                         pugi::encoding_utf8);
    }
  }
  if (!result) {
    const std::string &source = source_();
    int line = lineOfOffset(result.offset);
    std::ptrdiff_t lineStart =
        std::min<std::ptrdiff_t>(result.offset, static_cast<std::ptrdiff_t>(source.size()));
    while (lineStart > 0 && source[lineStart - 1] != '\n')
      --lineStart;
    std::ostringstream text;
    text << "line " << line << ", column " << (result.offset - lineStart + 1) << ": "
         << result.description();
    m_error = text.str();
    d.clear();
    if (report)
      ComMsgMgr::sendMsg("xml", ComMsg::Error, "@50-1@%s%d%s",
                         m_fileName.empty() ? std::string("<buffer>") : m_fileName, line,
                         result.description());
    return false;
  }
  pugi::xml_node root = d.doc.document_element();
  if (root) {
    m_root = HXMLWElement(root.internal_object(), this);
    m_hasRoot = true;
  }
  return true;
}

HXMLWElement *HXMLWInterface::getRootElement() { return m_hasRoot ? &m_root : nullptr; }

int HXMLWInterface::lineOfOffset(std::ptrdiff_t offset) const {
  if (offset < 0)
    return 0;
  const std::string &source = source_();
  // A file with many findings asks for many lines: the starts of its lines
  // are found once, on the first request, and searched after that.
  std::lock_guard<std::mutex> lock(m_impl->sourceMutex);
  if (m_lineStarts.empty()) {
    m_lineStarts.push_back(0);
    for (std::size_t at = source.find('\n'); at != std::string::npos;
         at = source.find('\n', at + 1))
      m_lineStarts.push_back(at + 1);
  }
  std::size_t end = std::min<std::size_t>(static_cast<std::size_t>(offset), source.size());
  auto after = std::upper_bound(m_lineStarts.begin(), m_lineStarts.end(), end);
  return static_cast<int>(after - m_lineStarts.begin());
}
