// SPDX-License-Identifier: MIT
// Doubly linked lists: the links after every operation, bounds of searches, callbacks that free.
#include <cstddef>
#include <gtest/gtest.h>
#include <random>
#include <string>
#include <utility>

#include "kv/containers.h"
#include "kv/memory.h"

#include "tests/support/support.hpp"

namespace {

// The binary layout is a promise: the links first, in this order.
static_assert(offsetof(LIST, count) == 0 && offsetof(LIST, first) < offsetof(LIST, last));
static_assert(offsetof(LIST_ELEM, prev) == 0 && offsetof(LIST_ELEM, next) == sizeof(void *));

struct Letter {
    LIST_ELEM links{};
    char value = 0;
    int32_t verdict = 1;  // what the comparison says when the letter is the wanted one
};

char value_of(const LIST_ELEM *element) {
    return element != nullptr ? static_cast<const Letter *>(static_cast<const void *>(element))->value
                              : '-';
}

int32_t compare(LIST_ELEM *element, kv_value key) {
    return value_of(element) == static_cast<char>(key)
               ? static_cast<const Letter *>(static_cast<const void *>(element))->verdict
               : 0;
}

void collect(LIST_ELEM *element, void *text) {
    *static_cast<std::string *>(text) += value_of(element);
}

// The letters in both directions and the count, all of which have to agree.
void expect_letters(const LIST &list, const std::string &expected) {
    std::string forward;
    std::string backward;
    list_traverse(&list, collect, &forward);
    list_traverse_backward(&list, collect, &backward);
    EXPECT_EQ(forward, expected);
    EXPECT_EQ(std::string(backward.rbegin(), backward.rend()), expected);
    EXPECT_EQ(list.count, static_cast<int32_t>(expected.size()));
    EXPECT_EQ(list_prev_elem(list.first), nullptr);
    EXPECT_EQ(list_next_elem(list.last), nullptr);
}

class List : public testing::Test {
  protected:
    List() {
        for (int i = 0; i < 6; ++i) letters_[i].value = static_cast<char>('a' + i);
        list_init(&list_);
    }
    LIST_ELEM *at(char letter) { return &letters_[letter - 'a'].links; }
    void append(const char *letters) {
        for (; *letters != '\0'; ++letters) list_insert_after(&list_, nullptr, at(*letters));
    }

    Letter letters_[6];
    LIST list_{7, nullptr, nullptr};
};

// Random insertions and deletions, on a string as well.
TEST_F(List, InsertsAndUnlinks) {
    std::mt19937 random(5);
    std::string letters;
    for (int step = 0; step < 2000 && !HasFailure(); ++step) {
        const char letter = static_cast<char>('a' + random() % 6);
        const size_t present = letters.find(letter), at = random() % (letters.size() + 1);
        LIST_ELEM *const reference = at < letters.size() ? this->at(letters[at]) : nullptr;
        EXPECT_EQ(list_isinlist(&list_, this->at(letter)), present != std::string::npos);
        if (present != std::string::npos) {
            LIST_ELEM *const next = this->at(letter)->next, *const prev = this->at(letter)->prev;
            if (random() % 2 == 0) {
                list_delete(&list_, this->at(letter));
            } else {
                list_free(&list_, this->at(letter), nullptr);
            }
            letters.erase(present, 1);
            EXPECT_EQ(list_next_elem(this->at(letter)), next);  // the links stay
            EXPECT_EQ(list_prev_elem(this->at(letter)), prev);
        } else if (random() % 2 == 0) {
            list_insert_before(&list_, reference, this->at(letter));
            letters.insert(reference != nullptr ? at : 0, 1, letter);
        } else {
            list_insert_after(&list_, reference, this->at(letter));
            letters.insert(reference != nullptr ? at + 1 : letters.size(), 1, letter);
        }
        expect_letters(list_, letters);
    }
    list_delete(&list_, nullptr);
    list_free(&list_, nullptr, heap_free);
    EXPECT_EQ(list_isinlist(&list_, nullptr), 0);
}

TEST_F(List, ReportsMisuse) {
    append("ab");
    list_insert_before(&list_, at('d'), at('c'));  // not linked anywhere
    list_insert_after(&list_, at('d'), at('c'));
    expect_letters(list_, "ab");
    EXPECT_EQ(at('c')->next, nullptr);
    list_init(nullptr);
    EXPECT_EQ(kvtest::count_in_log("\"List\""), 3);
    EXPECT_EQ(kvtest::count_in_log("  list_insert_before: list is not in order!\n"), 1);
    EXPECT_EQ(kvtest::count_in_log("  list_insert_after: list is not in order!\n"), 1);
    EXPECT_EQ(kvtest::count_in_log("  list_open: invalid listdescriptor!\n"), 1);
}

// What callbacks unlink or free; a use after that is for the sanitizer.
TEST_F(List, FreesByCallbacks) {
    append("abc");
    static LIST *list;
    static int32_t count_in_callback;
    list = &list_;
    list_free(&list_, at('b'), [](void *) { count_in_callback = list->count; });
    EXPECT_EQ(count_in_callback, 2);
    list_traverse(
        &list_,
        [](LIST_ELEM *element, void *from) {
            list_delete(static_cast<LIST *>(from), element);
            element->prev = element->next = nullptr;
        },
        &list_);
    expect_letters(list_, "");
    for (int i = 0; i < 3; ++i) {
        list_insert_after(&list_, nullptr, static_cast<LIST_ELEM *>(heap_calloc(1, sizeof(Letter))));
    }
    list_free_all(&list_, heap_free);
    expect_letters(list_, "");
    append("ab");
    list_free_all(&list_, nullptr);
    expect_letters(list_, "");
    EXPECT_EQ(at('a')->next, at('b'));
}

TEST_F(List, Searches) {
    append("abcdef");
    letters_[4].verdict = 2;  // 'e' is found by nobody
    EXPECT_EQ(list_search(&list_, compare, 'e'), nullptr);
    letters_[4].verdict = -1;
    EXPECT_EQ(list_search(&list_, compare, 'e'), nullptr);
    const struct {
        char start, end;  // '-' for NIL
        char key;
        char found_from, found_to, found_between;
    } cases[] = {
        {'b', 'd', 'a', '-', 'a', '-'}, {'b', 'd', 'b', 'b', 'b', 'b'}, {'b', 'd', 'd', 'd', 'd', 'd'},
        {'b', 'd', 'f', 'f', '-', '-'}, {'d', 'b', 'f', 'f', '-', 'f'}, {'c', '-', 'f', 'f', 'f', 'f'},
        {'-', 'd', 'a', '-', 'a', '-'},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE((std::string{c.start, c.end, c.key}));
        LIST_ELEM *start = c.start != '-' ? at(c.start) : nullptr;
        LIST_ELEM *end = c.end != '-' ? at(c.end) : nullptr;
        EXPECT_EQ(value_of(list_search_from(nullptr, start, compare, c.key)), c.found_from);
        EXPECT_EQ(value_of(list_search_to(&list_, end, compare, c.key)), c.found_to);
        EXPECT_EQ(value_of(list_search_from_to(nullptr, start, end, compare, c.key)), c.found_between);
    }
    letters_[4].value = 'b';  // two of them
    letters_[4].verdict = 1;
    EXPECT_EQ(list_search(&list_, compare, 'b'), at('b'));
    EXPECT_EQ(list_search_backward(&list_, compare, 'b'), at('e'));
    EXPECT_EQ(list_search_backward(&list_, compare, 'x'), nullptr);
}

TEST_F(List, CountsPositions) {
    EXPECT_EQ(list_get_element_by_number(&list_, 0), nullptr);
    append("abc");
    const std::pair<int32_t, char> cases[] = {{INT32_MIN, 'a'}, {0, 'a'}, {1, 'a'},        {2, 'b'},
                                              {3, 'c'},         {4, '-'}, {INT32_MAX, '-'}};
    for (const auto &[number, letter] : cases) {
        EXPECT_EQ(value_of(list_get_element_by_number(&list_, number)), letter) << number;
    }
    EXPECT_EQ(list_next_elem(nullptr), nullptr);
    EXPECT_EQ(list_prev_elem(nullptr), nullptr);
}

}  // namespace
