#include "tests/tools/program.hpp"

#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include "tests/support/support.hpp"

namespace kvtest {

const std::string kPress =
    "[press]\r\n"
    "  name =Press 4\r\n"
    "  speed =120.5\r\n"
    "  limits ={\r\n"
    "    min =0\r\n"
    "    max =250\r\n"
    "  }\r\n"
    "  axes =1,2,3\r\n"
    "  axis ={\r\n"
    "    name =X\r\n"
    "  }\r\n"
    "  axis ={\r\n"
    "    name =Y\r\n"
    "    travel ={\r\n"
    "      far =7\r\n"
    "    }\r\n"
    "  }\r\n"
    "[spare]\r\n";

namespace {

void redirect(int descriptor, const std::string &file) {
    const int opened = open(file.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0666);
    if (opened < 0 || dup2(opened, descriptor) < 0) _exit(126);
}

}  // namespace

ProgramTest::ProgramTest() {
    std::string name = (std::filesystem::temp_directory_path() / "kv-tools-XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr) std::abort();
    directory_ = name;
}

ProgramTest::~ProgramTest() {
    std::filesystem::remove_all(directory_);
}

std::string ProgramTest::content(const std::string &name) const {
    return read_file(path(name));
}

void ProgramTest::write(const std::string &name, const std::string &content) const {
    write_file(path(name), content);
}

Outcome ProgramTest::run(const std::vector<std::string> &words, const RunOptions &options) const {
    const std::string out = options.output.empty() ? path("standard.out").string() : options.output;
    const std::string err = options.error.empty() ? path("standard.err").string() : options.error;
    std::vector<std::string> copies = words;
    std::string program = KV_TEST_PROGRAM;
    if (options.as_nobody) {  // who cannot reach into the build directory of root
        program = directory_ / "kv";
        std::filesystem::copy_file(KV_TEST_PROGRAM, program,
                                   std::filesystem::copy_options::overwrite_existing);
        std::filesystem::permissions(directory_, std::filesystem::perms{0755});
    }
    std::vector<char *> arguments{program.data()};
    for (std::string &word : copies) arguments.push_back(word.data());
    arguments.push_back(nullptr);

    const pid_t child = fork();
    if (child == 0) {
        redirect(STDOUT_FILENO, out);
        redirect(STDERR_FILENO, err);
        const int input = open(options.input.empty() ? "/dev/null" : options.input.c_str(), O_RDONLY);
        dup2(input, STDIN_FILENO);
        if (chdir(directory_.c_str()) != 0) _exit(126);
        if (options.limit >= 0) {
            const rlimit limit = {options.limit_value, options.limit_value};
            setrlimit(static_cast<__rlimit_resource>(options.limit), &limit);
        }
        constexpr uid_t kNobody = 65534;
        if (options.as_nobody && geteuid() == 0 && setuid(kNobody) != 0) _exit(126);
        execv(program.c_str(), arguments.data());
        _exit(127);
    }
    int status = 0;
    waitpid(child, &status, 0);
    Outcome outcome;
    if (WIFEXITED(status)) outcome.code = WEXITSTATUS(status);
    if (options.output.empty()) outcome.out = read_file(out);
    if (options.error.empty()) outcome.err = read_file(err);
    std::filesystem::remove(directory_ / "standard.out");
    std::filesystem::remove(directory_ / "standard.err");
    return outcome;
}

void ProgramTest::expect(const std::vector<std::string> &words, int code, const std::string &out,
                         const std::string &err) const {
    std::string line = "kv env";
    for (const std::string &word : words) line += " '" + word.substr(0, 100) + "'";
    SCOPED_TRACE(line);
    std::vector<std::string> all{"env"};
    all.insert(all.end(), words.begin(), words.end());
    const Outcome outcome = run(all);
    EXPECT_EQ(outcome.code, code) << outcome.err;
    EXPECT_EQ(outcome.out, out);
    if (err.empty()) {
        EXPECT_EQ(outcome.err, "");
    } else {
        EXPECT_NE(outcome.err.find(err), std::string::npos)
            << "wanted: " << err << "\ngot: " << outcome.err;
    }
}

}  // namespace kvtest
