// Writes the logs of Codex and Claude Code for a month, of any size, and the totals that a scan has to find in them.
#include <CLI/CLI.hpp>
#include <cstdio>
#include <exception>

#include "LogHomeGenerator.h"

int main(int argc, char** argv) {
  quillmeter::bench::LogHomeOptions options;
  CLI::App app("Writes agent logs whose totals are known (truth.json) into a folder");
  app.add_option("DIR", options.root, "folder to write into")->required();
  app.add_option("--codex-bytes", options.codexBytes, "bytes of Codex logs")->check(CLI::NonNegativeNumber);
  app.add_option("--claude-bytes", options.claudeBytes, "bytes of Claude Code logs")->check(CLI::NonNegativeNumber);
  app.add_option("--seed", options.seed, "start of the random numbers");
  app.add_option("--files", options.files, "number of files")->check(CLI::PositiveNumber);
  app.add_option("--marked-share", options.markedShare, "share of the Claude bytes in lines with usage")
      ->check(CLI::Range(0.0, 1.0));
  CLI11_PARSE(app, argc, argv);
  try {
    const auto truth = quillmeter::bench::generateLogHome(options);
    std::printf("%d files, %lld bytes\n", truth.files, static_cast<long long>(truth.bytes));
    return 0;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
  }
}
