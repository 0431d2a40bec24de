#ifndef CLI_HELPFORMATTER_H
#define CLI_HELPFORMATTER_H

#include <QString>

#include <CLI/CLI.hpp>

#include <string>
#include <vector>

namespace Cli {

//! Formats --help: two usage lines, one option per line, groups in the order of their options.
class HelpFormatter : public CLI::Formatter
{
public:
    HelpFormatter();

    std::string make_usage(const CLI::App *app, std::string name) const override;
    std::string make_positionals(const CLI::App *app) const override;
    std::string make_group(std::string group,
                           bool isPositional,
                           std::vector<const CLI::Option *> options) const override;
    std::string make_option_opts(const CLI::Option *option) const override;
};

//! The text below the options: types, examples, exit codes.
QString helpFooter();

} // namespace Cli

#endif
