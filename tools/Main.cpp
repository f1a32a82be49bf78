// The command-line client of the library.

#include <csignal>
#include <cstdio>
#include <new>
#include <string>

#include "ZuXmlLib16/Exceptions.h"
#include "ZuXmlLib16/FormatString.h"
#include "ZuXmlLib16/Version.h"
#include "tools/CommandLine.h"
#include "tools/Commands.h"
#include "tools/Failure.h"
#include "tools/Files.h"
#include "tools/Locale.h"

namespace ZuXmlTool {
namespace {

void PrintText(const std::string& text) {
  WriteAll("-", reinterpret_cast<const unsigned char*>(text.data()), text.size());
}

void Run(const Command& command) {
  switch (command.action) {
    case Action::Help:
      PrintText(kHelp);
      break;
    case Action::Version:
      PrintText(std::string("zuxml ") + ZuXmlLib16::GetRuntimeVersion() + "\n");
      break;
    case Action::Convert:
      Convert(command);
      break;
    case Action::Tree:
      PrintTree(command);
      break;
  }
}

/// The messages of an exception and its causes on one line.
std::string OneLine(const ZuXmlLib16::CZuException& error) {
  std::string text = error.GetFullMessage();
  ZuXmlLib16::FindReplace(text, ".\nPath: ", ", at ");
  ZuXmlLib16::FindReplace(text, "\nPath: ", ", at ");
  ZuXmlLib16::FindReplace(text, ":\n", ": ");
  ZuXmlLib16::FindReplace(text, "\n", ": ");
  return text;
}

int Complain(const std::string& message, int status) {
  std::fprintf(stderr, "zuxml: %s\n", message.c_str());
  return status;
}

int RunGuarded(int argc, char** argv) {
  Command command;
  try {
    command = ParseCommandLine(argc, argv);
    Run(command);
    return 0;
  } catch (const Failure& failure) {
    return Complain(failure.message, failure.exitStatus);
  } catch (const ZuXmlLib16::CZuException& error) {
    return Complain(command.input + ": " + OneLine(error), kExitFailure);
  } catch (const std::bad_alloc&) {
    return Complain("out of memory", kExitFailure);
  }
}

}  // namespace
}  // namespace ZuXmlTool

int main(int argc, char** argv) {
  std::signal(SIGPIPE, SIG_IGN);  // a closed pipe is a failed write like any other
  ZuXmlTool::ChooseLocale();
  return ZuXmlTool::RunGuarded(argc, argv);
}
