// Random tables and random steps beside a model that reads the file character by character and, to step
// back into an earlier block, reads it again from the beginning.
#include <random>
#include <string_view>

#include "tests/profiles/tables.hpp"

namespace {

constexpr int kBlockLines = 16;
constexpr long kEnd = -1;

class Model {
  public:
    explicit Model(std::string_view bytes) : bytes_(bytes) {
        while (read() != '\n') continue;
        data_start_ = position_;
        rewind();
    }

    void rewind() {
        position_ = data_start_;
        current_ = ' ';
        begin_block(0);
    }
    // Type, size and as many fields as there are columns; empty at the end.
    std::string next(int columns) {
        std::string entry = field();
        if (entry.empty()) return "";
        for (int i = 1; i < columns; ++i) entry += " " + field();
        return entry;
    }
    std::string prev(int columns) {
        line_ -= 2;
        if (line_ < 0 && block_ == 0) {
            position_ = data_start_;
            line_ = 0;
            current_ = ' ';
            return "";
        }
        if (line_ < 0) {
            go_back(line_ + kBlockLines);
        } else {
            position_ = starts_[static_cast<std::size_t>(line_)];
        }
        current_ = ' ';
        return next(columns);
    }
    // The next entry with a number as its size and more than that in the first column behind.
    std::string search(double least) {
        for (;;) {
            const std::string type = field();
            const std::string size = field();
            if (type.empty()) return "";
            if (size.empty() || size[0] < '0' || size[0] > '9') {
                skip_line();
                continue;
            }
            const std::string first = field();
            const std::string entry = type + " " + size + " " + first + " " + field();
            if (std::strtod(first.c_str(), nullptr) > least) return entry;
        }
    }
    void skip_line() {
        while (current_ != '\n' && current_ != kEnd) get();
        get();
    }
    std::string field() {
        while (current_ == ' ' || current_ == '\t' || current_ == '\n') get();
        std::string text;
        for (; current_ != ' ' && current_ != '\t' && current_ != '\n' && current_ != kEnd; get()) {
            if (text.size() < 79) text += static_cast<char>(current_);
        }
        return text;
    }

  private:
    long read() {
        if (position_ >= static_cast<long>(bytes_.size()) || bytes_[at()] == 26) return kEnd;
        if (bytes_[at()] == '\r' && at() + 1 < bytes_.size() && bytes_[at() + 1] == '\n') ++position_;
        return static_cast<unsigned char>(bytes_[static_cast<std::size_t>(position_++)]);
    }
    std::size_t at() const { return static_cast<std::size_t>(position_); }
    void begin_block(int block) {
        block_ = block;
        line_ = 0;
        starts_.assign(kBlockLines, -1);
        starts_[0] = position_;
    }
    void get() {
        if (current_ == kEnd) return;
        const long before = current_;
        current_ = read();
        if (before == '\n' || (current_ != '\n' && current_ != kEnd)) return;
        if (++line_ == kBlockLines) {
            begin_block(block_ + 1);
        } else if (long &start = starts_[static_cast<std::size_t>(line_)]; start == -1) {
            start = position_;
        }
    }
    void pass_lines(int count) {
        for (long c = ' '; count > 0 && c != kEnd; count -= c == '\n' ? 1 : 0) c = read();
    }
    void go_back(int line) {
        position_ = data_start_;
        pass_lines((block_ - 1) * kBlockLines);
        begin_block(block_ - 1);
        for (; line_ < line; starts_[static_cast<std::size_t>(++line_)] = position_) pass_lines(1);
    }

    std::string_view bytes_;
    long position_ = 0;
    long data_start_ = 0;
    long current_ = ' ';
    int block_ = 0;
    int line_ = 0;
    std::vector<long> starts_;
};

// What kind of table a seed gives.
struct Style {
    bool regular;  // one entry a line, with all its fields
    bool crlf;
    int lines;
    std::size_t width;  // of the last field
};

std::string make_table(std::mt19937 &random, const Style &style) {
    const auto one_in = [&](unsigned n) { return random() % n == 0; };
    const std::string line_end = style.crlf ? "\r\n" : "\n";
    std::string text = "Typ Groesse A B" + line_end;
    for (int i = 0; i < style.lines; ++i) {
        if (!style.regular && one_in(9)) text += line_end;
        if (!style.regular && one_in(30)) text += "\r";
        text +=
            "T" + std::to_string(i % 3) + " " + std::to_string(i) + "  " + std::to_string(random() % 100);
        if (style.regular || !one_in(9)) text += "\t" + std::string(1 + random() % style.width, '1');
        if (!style.regular && one_in(9)) text += " 7";
        if (!style.regular && one_in(9)) text += " ";
        if (i + 1 < style.lines || one_in(2)) text += line_end;
    }
    if (!style.regular && one_in(4))
        text +=
            "\x1a"
            "T1 1 1 1\n";
    return text;
}

// The entry with its texts as the library's values give them.
std::string through_library(int32_t result, const char *name, const double *values) {
    if (result != 0) return "";
    return std::string(name) + " " + std::to_string(values[0]) + " " + std::to_string(values[1]);
}

std::string values_of(const std::string &entry) {
    if (entry.empty()) return "";
    std::vector<std::string> fields;
    std::string rest = entry;
    for (std::size_t blank; (blank = rest.find(' ')) != rest.npos; rest.erase(0, blank + 1)) {
        fields.push_back(rest.substr(0, blank));
    }
    fields.push_back(rest);
    return fields[0] + " " + fields[1] + " " + std::to_string(std::strtod(fields[2].c_str(), nullptr)) +
           " " + std::to_string(std::strtod(fields[3].c_str(), nullptr));
}

// Walks of some steps forwards and some back, and searches that run through the table.
void walk(std::mt19937 &random, const std::string &text, int steps) {
    const kvtest::Table table = kvtest::open_table(text, {"A", "B"});
    ASSERT_NE(table, nullptr);
    Model model(text);
    double values[2];
    char name[PROFIL_NAME_SIZE];
    for (int done = 0; done < steps;) {
        const std::size_t way = random() % 20;
        if (way == 0) {
            model.rewind();
            profil_reset(table.get(), nullptr, nullptr);
        }
        if (way == 1) {  // which nothing matches
            EXPECT_EQ(profil_search_next(table.get(), nullptr, 0, "Q", values, name), -1);
            for (;; model.skip_line()) {
                const std::string type = model.field();
                model.field();
                if (type.empty()) break;
            }
        }
        if (way == 3) {
            std::string op = ">";
            const PROFIL_CONDITION condition = {"A", op.data(), 50};
            int32_t result = 0;
            while (result == 0) {
                result = profil_search_next(table.get(), &condition, 1, "", values, name);
                ASSERT_EQ(through_library(result, name, values), values_of(model.search(50))) << text;
            }
        }
        for (std::size_t count = random() % 60; count > 0; --count, ++done) {
            const bool forwards = way % 2 == 0;
            const int32_t result =
                forwards ? profil_next(table.get(), values, name) : profil_prev(table.get(), values, name);
            const std::string expected = values_of(forwards ? model.next(4) : model.prev(4));
            ASSERT_EQ(through_library(result, name, values), expected) << done << "\n" << text;
        }
    }
}

TEST(ProfilesWalks, LikeTheModel) {
    std::mt19937 random(4711);
    for (int round = 0; round < 400; ++round) {
        const Style style = {round % 3 == 0, round % 2 == 0, static_cast<int>(random() % 70),
                             round % 50 == 1 ? 3000U : 5U};
        ASSERT_NO_FATAL_FAILURE(walk(random, make_table(random, style), 200)) << round;
    }
}

// The buffer moves over the file, and line ends lie on its borders.
TEST(ProfilesWalks, LargeTable) {
    std::mt19937 random(4712);
    for (const bool crlf : {false, true}) {
        const std::string text = make_table(random, {true, crlf, 12'000, 12});
        const kvtest::Table table = kvtest::open_table(text, {"A", "B"});
        Model model(text);
        std::vector<std::string> entries;
        for (std::string line; !(line = model.next(4)).empty();) entries.push_back(values_of(line));
        ASSERT_EQ(entries.size(), 12'000U);
        double values[2];
        char name[PROFIL_NAME_SIZE];
        for (const std::string &expected : entries) {
            ASSERT_EQ(through_library(profil_next(table.get(), values, name), name, values), expected);
        }
        for (std::size_t i = entries.size() - 1; i-- > 0;) {
            ASSERT_EQ(through_library(profil_prev(table.get(), values, name), name, values), entries[i])
                << i;
        }
        EXPECT_EQ(profil_prev(table.get(), values, name), -1);
    }
}

}  // namespace
