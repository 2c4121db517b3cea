// Eight threads at once, each with an environment of its own and all with one in common.
#include <atomic>
#include <thread>

#include "tests/env/trees.hpp"

namespace {

using namespace kvtest;

constexpr int kThreads = 8;
constexpr int kRounds = 150;

// gtest's expectations are left to the main thread; the others only count what went wrong.
class EnvThreads : public testing::Test {
  protected:
    std::atomic<int> wrong_{0};

    void expect(bool right) { wrong_ += right ? 0 : 1; }

    template <class Work>
    void run(Work work) {
        std::vector<std::thread> threads;
        for (int number = 0; number < kThreads; ++number) threads.emplace_back(work, number);
        for (std::thread &thread : threads) thread.join();
        EXPECT_EQ(wrong_, 0);
    }
};

TEST_F(EnvThreads, OneEnvironment) {
    const Env shared = tree("[s]\n  base =1\n", 1);
    run([&](int number) {
        const std::string name = numbered("n", number), block = name + "@list";
        double numbers[4] = {};
        for (int round = 0; round < kRounds; ++round) {
            const double values[] = {round + 0.5, -1e10, number * 1.0, 2e-3};
            expect(env_put_doubles(shared.get(), "s", block.c_str(), 4, values) == ENV_OK);
            int32_t count = 4;
            expect(env_get_doubles(shared.get(), "s", block.c_str(), 1, &count, numbers) == 1);
            expect(count == 4 && numbers[0] == values[0] && numbers[2] == values[2]);
            double value = 0;
            expect(env_get_double(shared.get(), "s", "base", 0, &value) == 1 && value == 1);
            expect(env_put_format(shared.get(), "s", (name + "@f").c_str(), "%d", round) == ENV_OK);
            char text[16] = "";
            expect(env_get(shared.get(), "s", (name + "@f").c_str(), 1, 16, text) == 1);
            expect(text == std::to_string(round));
            expect(env_count_path(shared.get(), "s", "base", 1) == 1);
            ENV *const sub = env_open_subenv(shared.get(), "s", name.c_str(), 1);
            expect(sub != nullptr && env_count_elements(sub, nullptr, nullptr, 1) >= 2);
            expect(env_put(sub, nullptr, "gone", "1") == ENV_OK);
            expect(env_delete(sub, nullptr, "gone") == ENV_OK);
            expect(env_close(sub, 0) == ENV_OK);
        }
    });
    EXPECT_EQ(env_count_elements(shared.get(), "s", nullptr, 1), 1 + kThreads);
}

TEST_F(EnvThreads, OwnEnvironments) {
    const Env base = tree("[s]\n  z =default\n", 99);
    run([&](int number) {
        for (int round = 0; round < kRounds / 3; ++round) {
            ENV *const env = env_open(number, base.get());
            std::string text = "[s]\n";
            for (int i = 0; i < 20; ++i) text += numbered("  v =", number * 100 + i) + "\n";
            expect(env_read_from_string(text.c_str(), env) == ENV_OK);
            for (int32_t pos = 1; pos <= 20; ++pos) {
                char name[8], value[8];
                int32_t id = -1;
                void *external = nullptr;
                expect(env_get_pos(env, "s", nullptr, 1, pos, &id, 8, name, 8, value, &external) ==
                       ENV_DATA);
                expect(id == number && value == std::to_string(number * 100 + pos - 1));
            }
            const char *found = nullptr;
            expect(env_get_reference(env, "s", "z", 1, &found) == 99);
            std::pair<ENV *, int> visit{env, 0};
            const auto call = [](ENV *, const char *section, const char *path, void *user) {
                auto &[owner, calls] = *static_cast<std::pair<ENV *, int> *>(user);
                calls += env_exist_data(owner, section, path, 1);
            };
            expect(env_traverse_leafs(env, call, &visit) == ENV_OK && visit.second == 20);
            ENV *const copy = env_open(0, nullptr);
            expect(env_sink(copy, env, ENV_SINK_APPEND) == ENV_OK);
            char *const written = env_write_to_string(copy), *const first = env_write_to_string(env);
            expect(written != nullptr && first != nullptr && std::string_view(written) == first);
            heap_free(written);
            heap_free(first);
            expect(env_close(copy, 0) == ENV_OK && env_close(env, 0) == ENV_OK);
        }
    });
}

// One iteration per process: the threads take turns at asking, nobody crashes.
TEST_F(EnvThreads, IterationsAndReports) {
    const Env shared = tree("[s]\n  a =1\n  b =2\n");
    run([&](int number) {
        for (int round = 0; round < kRounds / 3; ++round) {
            ENV *const env = env_open(number, nullptr);
            expect(env_put(env, "s", "x@5", "1") == ENV_OK);
            char name[8], value[8];
            int32_t id = -1;
            void *external = nullptr;
            expect(env_get_first(env, "s", nullptr, 1, &id, 8, name, 8, value, &external) == ENV_DATA);
            for (int step = 0; step < 5; ++step) env_get_next(8, name, 8, value, &external);
            expect(env_get(shared.get(), "s", "@", 1, 8, value) == ENV_BAD_PATH);
            expect(env_read_from_string("[s]\n}", env) == ENV_SYNTAX);
            int32_t line = 0, column = 0;
            char text[64];
            expect(env_get_error(&line, &column, 64, text) == ENV_OK && line == 2);
            kv_error("a report", nullptr, nullptr, __FILE__, __LINE__);
            env_attach_as_last_default(env, shared.get());
            expect(env_get(env, "s", "b", 1, 8, value) == 0);
            env_detach_default_chain(env);
            expect(env_close(env, 0) == ENV_OK);
        }
    });
    EXPECT_EQ(env_close(env_open(0, shared.get()), 0), ENV_OK);
}

TEST_F(EnvThreads, Files) {
    const Env shared = tree("[s]\n  a =1\n");
    run([&](int number) {
        const std::string name = numbered("c:\\t", number) + ".env";
        ENV *const env = env_open(number, nullptr);
        for (int round = 0; round < 10; ++round) {
            expect(env_put_long(env, "s", "round", round) == ENV_OK);
            env_write_file(name.c_str(), env);
            env_write_file("c:\\common.env", shared.get());
            expect(env_read_file(name.c_str(), env) == ENV_OK);
            int32_t value = -1;
            expect(env_get_long(env, "s", "round", 1, &value) == number && value == round);
            ENV *const common = env_open(0, nullptr);
            expect(env_read_file("c:\\common.env", common) == ENV_OK);
            expect(env_exist_data(common, "s", "a", 1) == 1);
            env_close(common, 0);
        }
        env_close(env, 0);
    });
}

}  // namespace
