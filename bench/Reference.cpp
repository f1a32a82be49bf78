#include "bench/Reference.h"

#include <expat.h>
#include <malloc.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include "bench/Documents.h"

namespace bench {
namespace {

void XMLCALL OnStart(void*, const XML_Char*, const XML_Char**) {}
void XMLCALL OnEnd(void*, const XML_Char*) {}
void XMLCALL OnText(void*, const XML_Char*, int) {}
void XMLCALL OnNamespaceStart(void*, const XML_Char*, const XML_Char*) {}

std::size_t PeakBytes() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return static_cast<std::size_t>(usage.ru_maxrss) * 1024;
}

}  // namespace

std::string MakeDocumentOfSize(const char* kind, std::size_t sizeInBytes) {
  DocumentOptions options;
  options.sizeInBytes = sizeInBytes;
  return MakeDocument(kind, options);
}

void ParseOnly(const std::string& document) {
  const XML_Parser parser = XML_ParserCreateNS(nullptr, '|');
  XML_SetElementHandler(parser, OnStart, OnEnd);
  XML_SetCharacterDataHandler(parser, OnText);
  XML_SetStartNamespaceDeclHandler(parser, OnNamespaceStart);
  const XML_Status status =
      XML_Parse(parser, document.data(), static_cast<int>(document.size()), 1);
  XML_ParserFree(parser);
  Require(status == XML_STATUS_OK, "the reference parser");
}

Work Parsing(const std::string& document) {
  return Timed([&document] { ParseOnly(document); });
}

double AddedBytesPerByte(const std::string& small, const std::string& document,
                         const std::function<void(const std::string&)>& work) {
  malloc_trim(0);
  int ends[2];
  Require(pipe(ends) == 0, "pipe");
  const pid_t child = fork();
  Require(child >= 0, "fork");
  std::size_t added = 0;
  if (child == 0) {
    work(small);
    const std::size_t before = PeakBytes();
    work(document);
    added = PeakBytes() - before;
    _exit(write(ends[1], &added, sizeof(added)) == sizeof(added) ? 0 : 1);
  }
  const bool isRead = read(ends[0], &added, sizeof(added)) == sizeof(added);
  int status = 0;
  Require(waitpid(child, &status, 0) == child && status == 0 && isRead, "measuring memory");
  close(ends[0]);
  close(ends[1]);
  return static_cast<double>(added) / static_cast<double>(document.size());
}

}  // namespace bench
