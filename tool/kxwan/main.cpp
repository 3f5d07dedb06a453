#include <tool/kxwan/CommandLine.h>

#include <csignal>
#include <cstdio>

namespace kxtool {
namespace {

constexpr const Verb* kVerbs[] = {&kPortsVerb, &kDetectVerb,  &kAtVerb,
                                  &kInfoVerb,  &kPrepareVerb, &kSimVerb,
                                  &kSpeedVerb, &kRecordVerb,  &kDemoVerb};

Result Run(int argc, char** argv) {
  CommandLine line;
  Result failure = ReadCommandLine(argc, argv, kVerbs, line);
  if (!failure && line.verb == nullptr) {
    std::fputs(line.text.c_str(), stdout);
    return {};
  }
  Report report(line.json);
  return report.Finish(failure ? failure : line.verb->run(line.options, report));
}

}  // namespace
}  // namespace kxtool

int main(int argc, char** argv) {
  // A reader that leaves ("kxwan info PORT | head -1") must not end the program with its port open:
  // the port's settings are put back when it closes.
  std::signal(SIGPIPE, SIG_IGN);
  const kxtool::Result failure = kxtool::Run(argc, argv);
  if (!failure) return kxtool::kDone;
  std::fprintf(stderr, "kxwan: %s\n", failure->sentence.c_str());
  return failure->status;
}
