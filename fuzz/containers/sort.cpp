// Lists of keys with ties: the order that inserting from the front gives.
#include <algorithm>
#include <vector>

#include "kv.h"

#include "fuzz/support.hpp"

namespace {

struct Record {
    LIST_ELEM links;
    uint8_t key;
};

int32_t compare(LIST_ELEM *earlier, LIST_ELEM *later) {
    const int a = reinterpret_cast<Record *>(earlier)->key / 3;
    const int b = reinterpret_cast<Record *>(later)->key / 3;
    return a == b ? 0 : (a < b ? 1 : 2);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    if (size == 0) return 0;
    const int32_t mode = data[0] % 3;
    std::vector<Record> records(size - 1);
    LIST list;
    list_init(&list);
    std::vector<Record *> expected;
    for (size_t i = 0; i < records.size(); ++i) {
        records[i].key = data[i + 1];
        list_insert_after(&list, nullptr, &records[i].links);
        const auto at = std::find_if(expected.begin(), expected.end(), [&](Record *each) {
            return compare(&each->links, &records[i].links) != (mode == 1 ? 1 : 2);
        });
        expected.insert(at, &records[i]);
    }
    sort_list(&list, mode, compare);
    LIST_ELEM *previous = nullptr;
    const LIST_ELEM *element = list.first;
    for (Record *record : expected) {
        KV_REQUIRE(element == &record->links);
        KV_REQUIRE(element->prev == previous);
        previous = &record->links;
        element = element->next;
    }
    KV_REQUIRE(element == nullptr && list.last == previous);
    KV_REQUIRE(list.count == static_cast<int32_t>(expected.size()));
    return 0;
}
