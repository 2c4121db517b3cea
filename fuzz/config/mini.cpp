// SPDX-License-Identifier: MIT
// A cache beside a plain model of it: the sections of a text, random calls, lookups with and without room
// for an index. The merged file gives the same values when it is loaded again, and merging once more
// changes nothing.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include "kv.h"

#include "config/mini_cache.hpp"
#include "fuzz/support.hpp"
#include "memory/failpoint.hpp"

namespace {

using kv::mini::next;
using kv::mini::Section;
using kv::mini::Sections;

struct ModelEntry {
    std::string key, value;
};
struct ModelSection {
    std::string name;
    std::vector<ModelEntry> entries;
};
using Model = std::vector<ModelSection>;

ModelSection *find(Model &model, std::string_view name) {
    const auto at =
        std::find_if(model.begin(), model.end(), [&](const ModelSection &s) { return s.name == name; });
    return at != model.end() ? &*at : nullptr;
}

ModelEntry *find(ModelSection &section, std::string_view key) {
    const auto at = std::find_if(section.entries.begin(), section.entries.end(),
                                 [&](const ModelEntry &e) { return e.key == key; });
    return at != section.entries.end() ? &*at : nullptr;
}

void load(std::string_view bytes, Sections &sections) {
    kv::platform::TextLines lines(bytes, kv::mini::kLongestLine,
                                  kv::platform::TextLines::Ends::feed_or_zero);
    kv::mini::load_all(lines, sections);
}

Model model_of(const Sections &sections) {
    Model model;
    for (const Section *s = sections.first(); s != nullptr; s = next(s)) {
        model.push_back({std::string(s->key()), {}});
        for (const kv::mini::Entry *e = s->entries.first(); e != nullptr; e = next(e)) {
            model.back().entries.push_back({std::string(e->key()), std::string(e->text())});
        }
    }
    return model;
}

class Input {
  public:
    Input(const std::uint8_t *data, std::size_t size) : at_(data), end_(data + size) {}
    bool empty() const { return at_ == end_; }
    unsigned byte() { return empty() ? 0 : *at_++; }
    // What a value can be that reads back: no line ends, no white space at the end.
    std::string value() {
        std::string text;
        for (unsigned count = byte() % 12; count > 0 && !empty(); --count) {
            const unsigned c = byte();
            text += static_cast<char>(c < 32 ? c + 64 : c);
        }
        while (!text.empty() && text.back() == ' ') text.pop_back();
        return text;
    }
    std::string key() {
        constexpr const char *kKeys[] = {"a", "b", "a longer key", "\xff\xfe", "B"};
        const unsigned c = byte();
        const std::string stem = kKeys[c % 5];
        return c < 128 ? stem : stem + std::to_string(c % 37);
    }
    const char *section() {
        constexpr const char *kSections[] = {"", "s", "A", "t", "another section", "\x80"};
        return kSections[byte() % 6];
    }
    std::string_view rest() {
        const std::string_view text(reinterpret_cast<const char *>(at_),
                                    static_cast<std::size_t>(end_ - at_));
        at_ = end_;
        return text;
    }
    std::string_view take(std::size_t most) {
        const std::size_t count = std::min(most, static_cast<std::size_t>(end_ - at_));
        const std::string_view text(reinterpret_cast<const char *>(at_), count);
        at_ += count;
        return text;
    }

  private:
    const std::uint8_t *at_;
    const std::uint8_t *end_;
};

void write(MINI &cache, Model &model, const char *section, const std::string &key,
           const std::string &value) {
    KV_REQUIRE(mini_write_string(&cache, section, key.c_str(), value.c_str()) == INI_OK);
    ModelSection *in = find(model, section);
    if (in == nullptr) {
        in = &*model.insert(*section == '\0' ? model.begin() : model.end(), ModelSection{section, {}});
    }
    if (ModelEntry *const entry = find(*in, key)) {
        entry->value = value;
    } else {
        in->entries.push_back({key, value});
    }
}

void read(MINI &cache, Model &model, const char *section, const std::string &key, bool room) {
    char buffer[600];
    int32_t size = sizeof buffer - 1;
    if (!room) kv::memory::plan_failure(0);
    const int32_t status = mini_read_string(&cache, section, key.c_str(), buffer, &size);
    kv::memory::plan_failure(-1);
    ModelSection *const in = find(model, section);
    const ModelEntry *const entry = in != nullptr ? find(*in, key) : nullptr;
    if (entry == nullptr) {
        KV_REQUIRE(status == (in != nullptr ? INI_NO_ENTRY : INI_NO_SECTION));
    } else {
        KV_REQUIRE(status == INI_OK &&
                   entry->value == std::string_view(buffer, static_cast<std::size_t>(size)));
    }
}

void change(MINI &cache, Model &model, const char *section, const std::string &key,
            const std::string *name) {
    ModelSection *const in = find(model, section);
    if (in == nullptr) return;  // the file would be asked
    ModelEntry *const entry = find(*in, key);
    const int32_t expected = entry != nullptr ? INI_OK : INI_NO_ENTRY;
    if (name == nullptr) {
        KV_REQUIRE(mini_delete_entry(&cache, section, key.c_str()) == expected);
        if (entry != nullptr) in->entries.erase(in->entries.begin() + (entry - in->entries.data()));
    } else {
        KV_REQUIRE(mini_rename_entry(&cache, section, key.c_str(), name->c_str()) == expected);
        if (entry != nullptr) entry->key = *name;
    }
}

void change_section(MINI &cache, Model &model, const char *section, const char *name) {
    ModelSection *const in = find(model, section);
    Section *const loaded = cache.sections.find(section);
    KV_REQUIRE((in == nullptr) == (loaded == nullptr));
    if (in == nullptr) return;
    if (*name != '\0') {
        cache.sections.rename(*loaded, name);
        in->name = name;
    } else {
        KV_REQUIRE(mini_unload_one_section(&cache, section) == INI_OK);
        model.erase(model.begin() + (in - model.data()));
    }
}

void calls(MINI &cache, Model &model, Input &in) {
    bool has_bulk = false;  // once is enough for an index
    for (unsigned count = in.byte() % 20; count > 0 && !in.empty(); --count) {
        const unsigned call = in.byte();
        const char *const section = in.section();
        const std::string key = in.key();
        switch (call % 8) {
            case 0:
            case 1:
            case 2:
                write(cache, model, section, key, in.value());
                break;
            case 3:
                read(cache, model, section, key, call < 128);
                break;
            case 4:
                change(cache, model, section, key, nullptr);
                break;
            case 5: {
                const std::string name = in.key();
                change(cache, model, section, key, &name);
                break;
            }
            case 6:
                change_section(cache, model, section, in.section());
                break;
            default:
                for (int i = 0; i < 10 && !has_bulk; ++i)
                    write(cache, model, section, key + std::to_string(i), key);
                has_bulk = true;
        }
    }
}

// What was written to the file is found in it by name.
void check_reload(Sections &sections, const kv::memory::String &bytes) {
    Sections again;
    load(bytes, again);
    for (Section *s = sections.first(); s != nullptr; s = next(s)) {
        if (!s->merged || sections.find(s->key()) != s || s->key().size() + 2 > kv::mini::kLongestLine)
            continue;
        Section *const found = again.find(s->key());
        KV_REQUIRE(found != nullptr);
        for (kv::mini::Entry *e = s->entries.first(); e != nullptr; e = next(e)) {
            if (s->entries.find(e->key()) != e ||
                e->key().size() + e->text().size() + 1 > kv::mini::kLongestLine) {
                continue;
            }
            const kv::mini::Entry *const entry = found->entries.find(e->key());
            KV_REQUIRE(entry != nullptr && entry->text() == e->text());
        }
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    static const bool quiet = [] {
        kv_error_onoff(0);
        unsetenv("KV_DEBUG_OUTPUT");
        return true;
    }();
    static_cast<void>(quiet);
    if (size == 0) return 0;
    Input in(data, size);
    const std::size_t calls_size = in.byte();
    Input of_calls(data + 1, std::min(calls_size, size - 1));
    in.take(calls_size);
    const std::string_view file = in.rest();

    MINI cache;
    load(file, cache.sections);
    Model model = model_of(cache.sections);
    calls(cache, model, of_calls);
    const Model now = model_of(cache.sections);
    KV_REQUIRE(now.size() == model.size());
    for (std::size_t i = 0; i < model.size(); ++i) {
        KV_REQUIRE(now[i].name == model[i].name && now[i].entries.size() == model[i].entries.size());
        for (std::size_t k = 0; k < model[i].entries.size(); ++k) {
            KV_REQUIRE(now[i].entries[k].key == model[i].entries[k].key);
            KV_REQUIRE(now[i].entries[k].value == model[i].entries[k].value);
        }
    }

    const kv::memory::String bytes = kv::mini::merged(file, cache.sections);
    check_reload(cache.sections, bytes);
    kv::mini::mark_saved(cache.sections);
    if (file.size() < kv::mini::kLongestLine / 2) {
        // The empty line before a section that was appended behind nothing but comments goes.
        const kv::memory::String once_more = kv::mini::merged(bytes, cache.sections);
        KV_REQUIRE(kv::mini::merged(once_more, cache.sections) == once_more);
    }
    const kv::memory::String alone = kv::mini::rewritten(cache.sections);
    check_reload(cache.sections, alone);
    return 0;
}
