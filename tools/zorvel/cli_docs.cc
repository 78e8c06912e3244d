#include "tools/zorvel/cli_docs.h"

#include <cctype>
#include <vector>

namespace zv::cli {
namespace {

// `text` safe for roff: backslashes and minus signs escaped, a line that
// would start with a control character guarded.
std::string roff(const std::string& text) {
  std::string out;
  bool lineStart = true;
  for (char c : text) {
    if (lineStart && (c == '.' || c == '\'')) out += "\\&";
    if (c == '\\')
      out += "\\e";
    else if (c == '-')
      out += "\\-";
    else
      out += c;
    lineStart = c == '\n';
  }
  return out;
}

bool shown(const CLI::Option* o) { return !o->get_group().empty(); }

std::vector<const CLI::App*> subcommandsOf(const CLI::App& app) {
  return app.get_subcommands([](const CLI::App*) { return true; });
}

// "--root DIR", "-s N", "--json".
std::string optionUsage(const CLI::Option* o) {
  std::string names;
  for (const auto& s : o->get_snames())
    names += (names.empty() ? "-" : ", -") + s;
  for (const auto& l : o->get_lnames())
    names += (names.empty() ? "--" : ", --") + l;
  if (o->get_expected_max() != 0 && o->get_type_size_max() != 0) {
    std::string type = o->get_type_name();
    if (type.empty()) type = "VALUE";
    names += " " + type;
  }
  return names;
}

std::string positionalUsage(const CLI::Option* o) {
  std::string name = o->get_name(true);
  for (char& c : name) c = static_cast<char>(std::toupper(c));
  if (o->get_expected_max() > 1) name += "...";
  return o->get_required() ? name : "[" + name + "]";
}

void describe(const CLI::App& app, const std::string& path, std::string& out) {
  std::string synopsis = path;
  bool hasOptions = false;
  for (const CLI::Option* o : app.get_options())
    if (!o->get_positional() && shown(o)) hasOptions = true;
  if (hasOptions) synopsis += " [OPTIONS]";
  const auto subs = subcommandsOf(app);
  if (!subs.empty()) synopsis += " COMMAND";
  for (const CLI::Option* o : app.get_options())
    if (o->get_positional()) synopsis += " " + positionalUsage(o);
  out += ".SS \"" + roff(synopsis) + "\"\n";
  if (!app.get_description().empty()) out += roff(app.get_description()) + "\n";
  for (const CLI::Option* o : app.get_options()) {
    if (!shown(o)) continue;
    out += ".TP\n";
    if (o->get_positional())
      out += ".I " + roff(positionalUsage(o)) + "\n";
    else
      out += ".B " + roff(optionUsage(o)) + "\n";
    out += roff(o->get_description().empty() ? "(no description)"
                                             : o->get_description()) +
           "\n";
  }
  for (const CLI::App* sub : subs)
    describe(*sub, path + " " + sub->get_name(), out);
}

// The words bash may offer after `app`: its subcommands and options.
std::string wordsOf(const CLI::App& app) {
  std::string words;
  for (const CLI::App* sub : subcommandsOf(app))
    words += (words.empty() ? "" : " ") + sub->get_name();
  for (const CLI::Option* o : app.get_options()) {
    if (o->get_positional() || !shown(o)) continue;
    for (const auto& s : o->get_snames())
      words += (words.empty() ? "-" : " -") + s;
    for (const auto& l : o->get_lnames())
      words += (words.empty() ? "--" : " --") + l;
  }
  return words;
}

void completionCases(const CLI::App& app, const std::string& path,
                     std::string& paths, std::string& cases) {
  cases += "    \"" + path + "\") words=\"" + wordsOf(app) + "\" ;;\n";
  for (const CLI::App* sub : subcommandsOf(app)) {
    const std::string next = path + " " + sub->get_name();
    paths += "      \"" + next + "\") path=\"" + next + "\" ;;\n";
    completionCases(*sub, next, paths, cases);
  }
}

}  // namespace

std::string manPage(const CLI::App& app, const std::string& version) {
  const std::string name = app.get_name();
  std::string upper = name;
  for (char& c : upper) c = static_cast<char>(std::toupper(c));
  std::string out = ".TH " + upper + " 1 \"\" \"" + roff(name + " " + version) +
                    "\" \"User Commands\"\n";
  std::string summary = app.get_description();
  if (summary.rfind(name + ": ", 0) == 0)
    summary = summary.substr(name.size() + 2);
  out += ".SH NAME\n" + roff(name) + " \\- " + roff(summary) + "\n";
  out += ".SH SYNOPSIS\n.B " + roff(name) + "\n" +
         (subcommandsOf(app).empty() ? "[\\fIOPTIONS\\fR]\n"
                                     : "\\fICOMMAND\\fR [\\fIOPTIONS\\fR] "
                                       "[\\fIARGUMENTS\\fR]\n");
  // Every (sub)command in order, the program's own options first.
  out += ".SH USAGE\n";
  describe(app, name, out);
  if (!app.get_footer().empty())
    out += ".SH NOTES\n" + roff(app.get_footer()) + "\n";
  return out;
}

std::string bashCompletion(const CLI::App& app) {
  const std::string name = app.get_name();
  std::string paths, cases;
  completionCases(app, "", paths, cases);
  std::string fn = "_" + name;
  return "# bash completion for " + name + " (made by " + name +
         " --docs bash-completion)\n" + fn +
         "() {\n"
         "  local cur=${COMP_WORDS[COMP_CWORD]} path=\"\" words=\"\" i\n"
         "  for ((i = 1; i < COMP_CWORD; i++)); do\n"
         "    case \"$path ${COMP_WORDS[i]}\" in\n" +
         paths +
         "    esac\n"
         "  done\n"
         "  case \"$path\" in\n" +
         cases +
         "  esac\n"
         "  COMPREPLY=($(compgen -W \"$words\" -- \"$cur\"))\n"
         "}\n"
         "complete -o default -F " +
         fn + " " + name + "\n";
}

}  // namespace zv::cli
