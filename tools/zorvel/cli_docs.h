// The man page and the bash completion of a program, made from its CLI11
// definitions (the ones --help prints), so the three never disagree. The
// build runs `zorvel --docs man` (and `zvtool --docs man`) and installs
// what they print.
//
// manPage(): a roff page of section 1: NAME and DESCRIPTION from the app,
// then every (sub)command with its synopsis, description, arguments and
// options, subcommands nested in order. Options in no group (hidden from
// --help) are left out here too.
//
// bashCompletion(): a script for bash-completion that offers, after the
// subcommands typed so far, their subcommands and options (file names
// otherwise).
#pragma once

#include <CLI/CLI.hpp>
#include <string>

namespace zv::cli {

std::string manPage(const CLI::App& app, const std::string& version);
std::string bashCompletion(const CLI::App& app);

}  // namespace zv::cli
