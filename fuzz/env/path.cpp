// SPDX-License-Identifier: MIT
// Paths: storing, deleting and looking up under any path gives in any tree what a plain model of it gives.
#include "fuzz/env/support.hpp"
#include "tests/models/env_tree.hpp"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    static const bool ready = (kvfuzz::quiet(), true);
    KV_REQUIRE(ready);

    // Lines: "path" is looked up and stores its own text there, "-path" deletes.
    kvfuzz::Environment env;
    kvmodel::Tree tree;
    const kvmodel::View model{&tree};
    env_put(env, "s", nullptr, "");
    model.put("s", nullptr, "", 0);
    const std::string input(reinterpret_cast<const char *>(data), size);
    for (size_t start = 0; start < input.size();) {
        const size_t end = std::min(input.find('\n', start), input.size());
        const std::string line = std::string(input, start, end - start).c_str();
        const char *const path = line.c_str();
        start = end + 1;
        if (*path == '-') {
            KV_REQUIRE(env_delete(env, "s", path + 1) == model.remove("s", path + 1));
            continue;
        }
        for (const int exact : {1, 0}) {
            const char *name = "";
            const char *text = "";
            const int32_t status = env_get_core(env, "s", path, exact, 0, nullptr, &name, &text, nullptr);
            const kvmodel::Place place = model.get("s", path, exact != 0, 0);
            KV_REQUIRE(status == place.code);
            if (!place.found()) continue;
            KV_REQUIRE(place.node->name == name && place.node->text == text);
        }
        bool small = true;  // else every put would make thousands of elements
        for (const kvmodel::Step &step : kvmodel::split(line)) small = small && step.index < 12;
        if (small) KV_REQUIRE(env_put(env, "s", path, path) == model.put("s", path, path, 0));
    }
    return 0;
}
