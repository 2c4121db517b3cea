// The subcommands of the program; each has a file of its own name.
#pragma once

#include <span>

namespace kvtool {

/// `kv calc`: expressions.
int run_calc(std::span<const char *const> words);
/// `kv scan`: tokens.
int run_scan(std::span<const char *const> words);
/// `kv env`: environment files. Gets the words behind "env"; returns the exit code or throws Failure.
int run_env(std::span<const char *const> words);
/// `kv ini`: INI files. As run_env().
int run_ini(std::span<const char *const> words);
/// `kv ls`: directories. As run_env().
int run_ls(std::span<const char *const> words);
/// `kv plot`: plot files to a serial port. As run_env().
int run_plot(std::span<const char *const> words);
/// `kv profile`: tables of profiles. As run_env().
int run_profile(std::span<const char *const> words);
/// `kv mat`: tables of mats. As run_env().
int run_mat(std::span<const char *const> words);
/// `kv timer`: times commands. As run_env().
int run_timer(std::span<const char *const> words);
/// `kv where`: the configuration search. As run_env().
int run_where(std::span<const char *const> words);

/// `kv record`: record files. As run_env().
int run_record(std::span<const char *const> words);

}  // namespace kvtool
