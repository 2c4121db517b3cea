// SPDX-License-Identifier: MIT
// Lists of keys with ties, and short ones with pairs that compare in no order: the order that inserting
// from the front gives.
#include "kv.h"

#include "fuzz/support.hpp"
#include "tests/models/sort_list.hpp"

namespace {

struct Record {
    LIST_ELEM links;
    uint8_t key;
};

int32_t key_of(LIST_ELEM *element) {
    return reinterpret_cast<Record *>(element)->key;
}

int32_t compare(LIST_ELEM *earlier, LIST_ELEM *later) {
    const int32_t a = key_of(earlier) / 3, b = key_of(later) / 3;
    if (a == b) return a % 2 == 0 ? 0 : 77;  // neither
    return a < b ? 1 : 2;
}

int32_t compare_without_order(LIST_ELEM *earlier, LIST_ELEM *later) {
    return (key_of(earlier) * 7 + key_of(later) * 13) % 11 % 3;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    if (size == 0) return 0;
    const int32_t mode = data[0] % 4 == 3 ? -7 : data[0] % 4;
    std::vector<Record> records(size - 1);
    const auto compares = data[0] > 127 && records.size() <= 64 ? compare_without_order : compare;
    LIST list;
    list_init(&list);
    for (size_t i = 0; i < records.size(); ++i) {
        records[i].key = data[i + 1];
        list_insert_after(&list, nullptr, &records[i].links);
    }
    const auto expected = kvmodel::inserted(kvmodel::elements_of(list), mode, compares);
    sort_list(&list, mode, compares);
    KV_REQUIRE(kvmodel::elements_of(list) == expected);
    return 0;
}
