// SPDX-License-Identifier: MIT
// Eight threads at once, each with an environment of its own and all with one in common.
#include <atomic>
#include <thread>

#include "tests/env/trees.hpp"

namespace {

using namespace kvtest;

// gtest's expectations are left to the main thread; the others only count what went wrong.
class EnvThreads : public testing::Test {
  protected:
    void expect(bool right) { wrong_ += right ? 0 : 1; }
    template <class Work>
    void run(int rounds, Work work) {
        std::vector<std::thread> threads;
        for (int number = 0; number < kThreads; ++number) {
            threads.emplace_back([&work, rounds, number] {
                for (int round = 0; round < rounds; ++round) work(number, round);
            });
        }
        for (std::thread &thread : threads) thread.join();
        EXPECT_EQ(wrong_, 0);
    }

    static constexpr int kThreads = 8;
    const Env shared_ = tree("[s]\n  base =1\n  b =2\n", 1);

  private:
    std::atomic<int> wrong_{0};
};

TEST_F(EnvThreads, OneEnvironment) {
    run(150, [&](int number, int round) {
        ENV *const shared = shared_.get();
        const std::string name = numbered("n", number), list = name + "@list", text = name + "@f";
        const double values[] = {round + 0.5, -1e10, number * 1.0, 2e-3};
        double numbers[4] = {};
        int32_t count = 4, id = -1;
        expect(env_put_doubles(shared, "s", list.c_str(), 4, values) == ENV_OK);
        expect(env_get_doubles(shared, "s", list.c_str(), 1, &count, numbers) == 1);
        expect(count == 4 && numbers[0] == values[0] && numbers[2] == values[2]);
        expect(env_put_format(shared, "s", text.c_str(), "%d", round) == ENV_OK);
        char name_buffer[8], value[16] = "";
        expect(env_get(shared, "s", text.c_str(), 1, 16, value) == 1 && value == std::to_string(round));
        expect(env_count_path(shared, "s", "base", 1) == 1);
        ENV *const sub = env_open_subenv(shared, "s", name.c_str(), 1);
        expect(sub != nullptr && env_count_elements(sub, nullptr, nullptr, 1) >= 2);
        expect(env_put(sub, nullptr, "gone", "1") == ENV_OK && env_delete(sub, nullptr, "gone") == ENV_OK);
        expect(env_close(sub, 0) == ENV_OK);
        // One iteration per process: the threads take turns at asking, nobody crashes.
        void *external = nullptr;
        expect(env_get_first(shared, "s", nullptr, 1, &id, 8, name_buffer, 16, value, &external) ==
               ENV_DATA);
        for (int step = 0; step < 3; ++step) env_get_next(8, name_buffer, 16, value, &external);
    });
    EXPECT_EQ(env_count_elements(shared_.get(), "s", nullptr, 1), 2 + kThreads);
}

TEST_F(EnvThreads, OwnEnvironments) {
    run(40, [&](int number, int round) {
        ENV *const env = env_open(number, shared_.get()), *const copy = env_open(0, nullptr);
        std::string text = "[s]\n";
        for (int i = 0; i < 20; ++i) text += numbered("  v =", number * 100 + i) + "\n";
        expect(env_read_from_string(text.c_str(), env) == ENV_OK);
        for (int32_t i = 1; i <= 20; ++i) {
            int32_t value = -1;
            expect(env_get_long(env, "s", numbered("v@", i).c_str(), 1, &value) == number);
            expect(value == number * 100 + i - 1);
        }
        const char *found = nullptr;
        expect(env_get_reference(env, "s", "base", 1, &found) == 1);
        expect(env_sink(copy, env, ENV_SINK_APPEND) == ENV_OK);
        char *const written = env_write_to_string(copy), *const first = env_write_to_string(env);
        expect(written != nullptr && first != nullptr && std::string_view(written) == first);
        heap_free(written);
        heap_free(first);
        expect(env_get(env, "s", "@", 1, 0, nullptr) == ENV_BAD_PATH);  // reported
        const std::string name = numbered("c:\\t", number) + ".env";
        expect(env_put_long(env, "s", "round", round) == ENV_OK);
        env_write_file(name.c_str(), env);
        env_write_file("c:\\common.env", shared_.get());
        expect(env_read_file(name.c_str(), copy) == ENV_OK &&
               env_count_elements(copy, "s", nullptr, 1) == 21);
        expect(env_read_file("c:\\common.env", copy) == ENV_OK &&
               env_exist_data(copy, "s", "base", 1) == 1);
        expect(env_read_from_string("[s]\n}", copy) == ENV_SYNTAX);
        int32_t line = 0;
        expect(env_get_error(&line, nullptr, 0, nullptr) == ENV_OK && line == 2);
        expect(env_close(copy, 0) == ENV_OK && env_close(env, 0) == ENV_OK);
    });
    EXPECT_EQ(env_close(env_open(0, shared_.get()), 0), ENV_OK);
}

}  // namespace
