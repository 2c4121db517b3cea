// SPDX-License-Identifier: MIT
#include "config/mini_cache.hpp"

#include "kv/fio.h"

#include "config/ini_lines.hpp"

namespace kv::mini {

Path::Path(const MINI &cache) {
    text_[0] = '\0';
    if (cache.name.empty()) return;
    fio_makepath(text_, nullptr, cache.dir.c_str(), cache.name.c_str());
}

FileLines::FileLines(const char *path)
    : open_(file_.open(path, platform::InputFile::Content::consistent)),
      lines_(file_, buffer_, sizeof buffer_, kLongestLine, platform::TextLines::Ends::feed_or_zero) {}

std::string_view section_name(const char *section) {
    return config::without_blanks(config::section_text(section));
}

std::int32_t find_section(MINI &cache, std::string_view name, Section *&section) {
    section = cache.sections.find(name);
    if (section != nullptr) return INI_OK;
    if (cache.name.empty()) return INI_NO_SECTION;
    const Path path(cache);
    FileLines file(path.text());
    if (!file.is_open()) return file.is_missing() ? INI_NO_SECTION : INI_FAILED;
    section = load_one(file.lines(), name, cache.sections);
    if (section != nullptr) return INI_OK;
    return file.lines().failed() ? INI_FAILED : INI_NO_SECTION;
}

}  // namespace kv::mini
