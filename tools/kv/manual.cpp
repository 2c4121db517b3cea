// SPDX-License-Identifier: MIT
#include "tools/kv/manual.hpp"

#include <iostream>

#include "kv/version.h"

#include "tools/kv/actions.hpp"
#include "tools/kv/failure.hpp"
#include "tools/kv/help.hpp"

namespace kvtool {

namespace {

// A text as it stands in the page.
std::string escaped(std::string_view text) {
    std::string result;
    for (const char c : text) {
        if (result.empty() || result.back() == '\n') {
            if (c == '.' || c == '\'') result += "\\&";
        }
        if (c == '\\') {
            result += "\\e";
        } else if (c == '-') {
            result += "\\-";
        } else if (c == '\'') {
            result += "\\(aq";
        } else if (c == '^') {
            result += "\\(ha";
        } else if (c == '~') {
            result += "\\(ti";
        } else if (c == '`') {
            result += "\\(ga";
        } else {
            result += c;
        }
    }
    return result;
}

// A paragraph, in lines that are not too long.
void print_filled(std::string_view text) {
    constexpr std::size_t kWidth = 70;
    std::string line;
    for (const std::string_view word : words_of(text)) {
        if (!line.empty() && line.size() + 1 + word.size() > kWidth) {
            std::cout << escaped(line) << '\n';
            line.clear();
        }
        line.append(line.empty() ? "" : " ").append(word);
    }
    std::cout << escaped(line) << '\n';
}

// A text of the help, whose lines are made for a terminal.
void print_text(std::string_view text) {
    while (!text.empty() && text.front() == '\n') text.remove_prefix(1);
    while (!text.empty() && text.back() == '\n') text.remove_suffix(1);
    if (text.empty()) return;
    std::cout << ".PP\n.nf\n" << escaped(text) << "\n.fi\n";
}

void print_options(std::span<const Option> options) {
    for (const Option &option : options) {
        std::string forms = forms_of(option);
        forms.erase(0, forms.find_first_not_of(' '));
        std::cout << ".TP\n.B " << escaped(forms) << '\n';
        print_filled(option.help);
    }
}

void print_action(const ActionTable &table, const Action &action) {
    std::cout << ".SS " << escaped(table.command_of(action).substr(3)) << '\n';
    std::cout << ".B " << escaped(table.command_of(action)) << '\n';
    if (!action.operands.empty()) std::cout << escaped(action.operands) << '\n';
    print_text(action.details);
    print_options(action.options);
}

void print_subcommand(const ActionTable &table) {
    std::string heading(table.name());
    for (char &c : heading) c = static_cast<char>(c - 'a' + 'A');
    std::cout << ".SH " << heading << '\n';
    print_filled(std::string(table.command) + ": " + std::string(table.summary) + ".");
    print_text(table.overview);
    print_text(table.more_details);
    if (!table.options.empty()) {
        std::cout << ".PP\nOptions of every action:\n";
        print_options(table.options);
    }
    for (const Action *action : table.actions) print_action(table, *action);
}

constexpr std::string_view kBeginning = R"(.SH NAME
kv \- work with the files, tables and expressions of the kv library
.SH SYNOPSIS
.B kv
.I SUBCOMMAND
.RI [ ACTION ]
.RI [ OPERAND ]...
.RI [ OPTION ]...
.br
.B kv help
.RI [ SUBCOMMAND
.RI [ ACTION ]]
.SH DESCRIPTION
.B kv
does from the command line what the kv library does for applications.
Options may stand anywhere; behind
.B \-\-
there are none.
The file
.B \-
is standard input or output.
Data goes to standard output, messages go to standard error.
.SH OPTIONS
These options belong to every subcommand.
)";

constexpr std::string_view kEnd = R"(.SH EXIT STATUS
.TP
.B 0
Done.
.TP
.B 1
Not found, or a check failed.
.TP
.B 2
Wrong usage.
.TP
.B 3
A file cannot be read or written, or breaks its format.
.SH ENVIRONMENT
.TP
.B KV
A directory in which the main configuration file is sought.
.TP
.B kv
The path of the main configuration file.
.TP
.B KV_DRIVE_A \fR...\fB KV_DRIVE_Y
The directories that are the drives of these letters.
Z: is the root directory, and C: without this variable
.IR \(ti/.local/share/kv/drive_c .
.TP
.B KV_REGISTRY
A file of
.RI [ key ]
sections that stands for the registry of the current user.
.TP
.B KV_DEBUG_OUTPUT
A file to which what would go to a debugger is appended, or
.BR stderr .
.TP
.B KV_COM1 \fR...
The device that is the serial port of this name.
.TP
.B KV_COM_TIMEOUT
The seconds for which a serial port may take nothing.
Without it there is no limit.
.TP
.B NO_COLOR
If it is not empty, nothing is coloured.
.TP
.B KV_LOCK_TIMEOUT
The seconds that are waited for a file that another process is changing.
Without this variable it is 10.
.SH FILES
A file that is saved holds its old content or all of the new one,
whenever the process or the machine stops.
That cannot be promised of files that are written in place:
those with several hard links, of another owner,
with attributes that this user may not give a file,
mount points, devices, and files in a directory that may not be written.
.TP
.I kv3.ini
The main configuration file.
.B kv where
tells which one is found.
.TP
.I C:\ekv.err
The log of the library\(aqs reports.
.SH EXAMPLES
.nf
kv env get site.env machine \(aqaxis@2@limits@max\(aq \-\-type double \-\-default press.env
kv ini edit \-\-file kv3.ini \-e \(aqset Pfade Daten D:\earchiv\(aq \-e \(aqdelete Beep Tick\(aq
kv record dump press4.rec \(aqd l d d s12\(aq
kv calc \(aq2*SIN(30)\(aq
.fi
)";

}  // namespace

int print_manual() {
    std::cout << ".TH KV 1 " KV_MANUAL_DATE " \"kv " << kv_version() << "\" \"User Commands\"\n"
              << kBeginning;
    print_options(common_options());
    for (const ActionTable *table : subcommands()) print_subcommand(*table);
    std::cout << kEnd;
    return kDone;
}

}  // namespace kvtool
