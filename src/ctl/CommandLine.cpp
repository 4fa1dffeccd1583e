#include "ctl/CommandLine.h"

#include <algorithm>
#include <sstream>

#include <CLI/CLI.hpp>

#include "base/L10n.h"

namespace quillmeter::ctl {
namespace {

constexpr std::string_view languageOption = "--language";

// What the parser's texts begin with where they name an argument: "--now: 1 required ISO missing".
std::string argumentNamedBy(const CLI::ParseError& error) {
  const std::string text = error.what();
  return text.substr(0, text.find_first_of(": "));
}

void translate(CLI::App& root) {
  root.option_defaults()->group(QM_TR("选项"));
  root.set_help_flag("-h,--help", QM_TR("显示帮助"));
  root.get_formatter()->label("Usage", QM_TR("用法"));
  root.get_formatter()->label("Positionals", QM_TR("参数"));
  root.get_formatter()->label("OPTIONS", QM_TR("选项"));
  root.get_formatter()->label("SUBCOMMAND", QM_TR("命令"));
  root.get_formatter()->label("SUBCOMMANDS", QM_TR("命令"));
  root.get_formatter()->label("Excludes", QM_TR("不能同用"));
  root.get_formatter()->column_width(34);
}

// The parser gives each command a help option of its own, under a heading of its own.
void groupHelpOptions(CLI::App& app) {
  for (CLI::App* command : app.get_subcommands([](const CLI::App*) { return true; })) {
    command->get_help_ptr()->group(QM_TR("选项"));
    groupHelpOptions(*command);
  }
}

}  // namespace

std::optional<std::string> languageArgument(const std::vector<std::string>& arguments) {
  for (std::size_t i = 0; i < arguments.size() && arguments[i] != "--"; ++i) {
    const std::string_view argument = arguments[i];
    if (argument == languageOption && i + 1 < arguments.size()) return arguments[i + 1];
    if (argument.starts_with(languageOption) && argument.substr(languageOption.size()).starts_with('=')) {
      return std::string(argument.substr(languageOption.size() + 1));
    }
  }
  return std::nullopt;
}

CommandLine::CommandLine(Console& console, std::string version) : console_(console), version_(std::move(version)) {}

CommandLine::~CommandLine() = default;

void CommandLine::add(std::unique_ptr<Command> command) {
  commands_.push_back(std::move(command));
}

ExitCode CommandLine::run(const std::vector<std::string>& arguments) {
  CLI::App root(QM_TR("在终端里查看 AI 编程助手的 Token 用量，并管理 Quillmeter 的设置。"), "quillmeterctl");
  root.option_defaults()->multi_option_policy(CLI::MultiOptionPolicy::TakeLast);
  translate(root);
  // Once a command is named, a folder may be called like another one.
  root.require_subcommand(0, 1);
  root.allow_extras();
  root.set_version_flag("--version", "quillmeterctl " + version_, QM_TR("显示版本"));
  root.add_option(std::string(languageOption), language_, QM_TR("输出语言：zh-Hans 或 en（默认用已保存的选择）"))
      ->type_name("LANG");

  ChosenAction chosen;
  for (const auto& command : commands_) command->declare(root, chosen);
  for (CLI::App* subcommand : root.get_subcommands([](const CLI::App*) { return true; })) {
    subcommand->group(QM_TR("命令"));
    subcommand->fallthrough();
  }
  groupHelpOptions(root);
  try {
    root.parse(std::vector<std::string>(arguments.rbegin(), arguments.rend()));
  } catch (const CLI::Success& request) {  // help or version
    std::ostringstream text;
    root.exit(request, text, text);
    console_.print(text.str());
    return ExitCode::done;
  } catch (const CLI::ParseError& error) {
    return console_.wrongUse(
        L10n::format(QM_TR("%@ 的用法有误，请看 quillmeterctl --help。"), {argumentNamedBy(error)}));
  }
  return runParsed(root, chosen);
}

ExitCode CommandLine::runParsed(CLI::App& root, const ChosenAction& chosen) {
  std::vector<std::string> unexpected = root.remaining(true);
  std::erase(unexpected, "--");  // the parser's mark before arguments that look like options
  if (!unexpected.empty()) {
    const bool isCommand = !chosen && !unexpected.front().starts_with('-');
    const std::string sentence = isCommand ? QM_TR("没有“%@”这个命令，请看 quillmeterctl --help。")
                                           : QM_TR("不认识参数“%@”，请看 quillmeterctl --help。");
    return console_.wrongUse(L10n::format(sentence, {unexpected.front()}));
  }
  const bool languageGiven = root.get_option(std::string(languageOption))->count() > 0;
  if (languageGiven && language_ != "zh-Hans" && language_ != "en") {
    return console_.wrongUse(L10n::format(QM_TR("没有“%@”这种语言，可选 zh-Hans 或 en。"), {language_}));
  }
  if (!chosen) return console_.wrongUse(QM_TR("请给出一个命令，请看 quillmeterctl --help。"));
  return chosen();
}

}  // namespace quillmeter::ctl
