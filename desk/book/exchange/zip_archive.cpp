#include "book/exchange/zip_archive.h"

#include <minizip/unzip.h>
#include <minizip/zip.h>

#include <algorithm>
#include <array>
#include <limits>

#include "book/exchange/source_table.h"

namespace desk::book {

namespace {

/// A file in memory as the library wants files: `bytes` to read, `written` to write.
struct MemoryFile {
  std::string_view bytes = {};
  std::string* written = nullptr;
  std::size_t at = 0;

  [[nodiscard]] std::size_t Size() const {
    return written != nullptr ? written->size() : bytes.size();
  }
};

MemoryFile& FileOf(voidpf stream) {
  return *static_cast<MemoryFile*>(stream);
}

voidpf ZCALLBACK OnOpen(voidpf opaque, const void* /*name*/, int /*mode*/) {
  return opaque;
}
uLong ZCALLBACK OnRead(voidpf /*opaque*/, voidpf stream, void* target, uLong size) {
  MemoryFile& file = FileOf(stream);
  const std::string_view all =
      file.written != nullptr ? std::string_view(*file.written) : file.bytes;
  const std::size_t count = std::min<std::size_t>(size, all.size() - file.at);
  std::copy_n(all.data() + file.at, count, static_cast<char*>(target));
  file.at += count;
  return static_cast<uLong>(count);
}
uLong ZCALLBACK OnWrite(voidpf /*opaque*/, voidpf stream, const void* source, uLong size) {
  MemoryFile& file = FileOf(stream);
  if (file.written == nullptr) return 0;
  try {
    file.written->replace(file.at, size, static_cast<const char*>(source), size);
  } catch (const std::exception&) {
    return 0;
  }
  file.at += size;
  return size;
}
ZPOS64_T ZCALLBACK OnTell(voidpf /*opaque*/, voidpf stream) {
  return FileOf(stream).at;
}
long ZCALLBACK OnSeek(voidpf /*opaque*/, voidpf stream, ZPOS64_T offset, int origin) {
  MemoryFile& file = FileOf(stream);
  const std::size_t start = origin == ZLIB_FILEFUNC_SEEK_CUR   ? file.at
                            : origin == ZLIB_FILEFUNC_SEEK_END ? file.Size()
                                                               : 0;
  if (offset > file.Size() - start) return -1;
  file.at = start + static_cast<std::size_t>(offset);
  return 0;
}
int ZCALLBACK OnClose(voidpf /*opaque*/, voidpf /*stream*/) {
  return 0;
}
int ZCALLBACK OnError(voidpf /*opaque*/, voidpf /*stream*/) {
  return 0;
}

zlib_filefunc64_def FunctionsOn(MemoryFile& file) {
  return {OnOpen, OnRead, OnWrite, OnTell, OnSeek, OnClose, OnError, &file};
}

[[noreturn]] void Damaged() {
  throw SourceError("文件已损坏，或者不是工作簿");
}

}  // namespace

struct ZipReader::State {
  MemoryFile file;
  unzFile archive = nullptr;
  std::size_t left = kMaxSourceBytes;
};

ZipReader::ZipReader(std::string_view bytes) : state_(std::make_unique<State>()) {
  state_->file.bytes = bytes;
  zlib_filefunc64_def functions = FunctionsOn(state_->file);
  state_->archive = unzOpen2_64("", &functions);
  if (state_->archive == nullptr) Damaged();
}

ZipReader::~ZipReader() {
  unzClose(state_->archive);
}

void ZipReader::Renew() {
  state_->left = kMaxSourceBytes;
}

bool ZipReader::Read(const std::string& name, const std::function<void(std::string_view)>& take) {
  constexpr int kNoCase = 2;
  if (unzLocateFile(state_->archive, name.c_str(), kNoCase) != UNZ_OK) return false;
  if (unzOpenCurrentFile(state_->archive) != UNZ_OK) Damaged();
  const auto closed = [this](unzFile) { unzCloseCurrentFile(state_->archive); };
  const std::unique_ptr<void, decltype(closed)> open(state_->archive, closed);
  std::array<char, std::size_t{64} << 10> piece;
  for (;;) {
    const int count = unzReadCurrentFile(state_->archive, piece.data(), piece.size());
    if (count < 0) Damaged();
    if (count == 0) break;
    const auto size = static_cast<std::size_t>(count);
    if (size > state_->left) throw SourceError("工作簿展开后太大");
    state_->left -= size;
    take({piece.data(), size});
  }
  // At the end of a whole file its checksum is known to be right.
  if (unzeof(state_->archive) != 1 || unzCloseCurrentFile(state_->archive) != UNZ_OK) Damaged();
  return true;
}

struct ZipWriter::State {
  std::string bytes;
  MemoryFile file;
  zipFile archive = nullptr;
};

ZipWriter::ZipWriter() : state_(std::make_unique<State>()) {
  state_->file.written = &state_->bytes;
  zlib_filefunc64_def functions = FunctionsOn(state_->file);
  state_->archive = zipOpen2_64("", APPEND_STATUS_CREATE, nullptr, &functions);
}

ZipWriter::~ZipWriter() {
  if (state_->archive != nullptr) zipClose(state_->archive, nullptr);
}

void ZipWriter::Add(const std::string& name, std::string_view content) {
  zip_fileinfo info{};
  info.dosDate = (1U << 5) | 1U;  // the first day that there is: equal charts give equal files
  constexpr int kLevel = 6;
  bool good = zipOpenNewFileInZip(state_->archive, name.c_str(), &info, nullptr, 0, nullptr, 0,
                                  nullptr, Z_DEFLATED, kLevel) == ZIP_OK;
  constexpr std::size_t kPiece = std::size_t{1} << 20;
  while (good && !content.empty()) {
    const std::size_t count = std::min(content.size(), kPiece);
    good = zipWriteInFileInZip(state_->archive, content.data(), static_cast<unsigned>(count)) ==
           ZIP_OK;
    content.remove_prefix(count);
  }
  if (!good || zipCloseFileInZip(state_->archive) != ZIP_OK) {
    throw tavrix::host::HostError("不能生成工作簿");
  }
}

std::string ZipWriter::Finish() {
  const bool good = zipClose(state_->archive, nullptr) == ZIP_OK;
  state_->archive = nullptr;
  if (!good) throw tavrix::host::HostError("不能生成工作簿");
  return std::move(state_->bytes);
}

}  // namespace desk::book
