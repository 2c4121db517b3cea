// SPDX-License-Identifier: MIT
#include <windows.h>

#include "tests/support/support.hpp"
#include "tests/tools/program.hpp"

namespace kvtest {

namespace {

// A file that a program started from here has, too.
class Inherited {
  public:
    Inherited(const std::string &path, DWORD access, DWORD disposition) {
        SECURITY_ATTRIBUTES attributes{sizeof attributes, nullptr, TRUE};
        handle_ = CreateFileA(path.c_str(), access, FILE_SHARE_READ | FILE_SHARE_WRITE, &attributes,
                              disposition, FILE_ATTRIBUTE_NORMAL, nullptr);
    }
    Inherited(const Inherited &) = delete;
    Inherited &operator=(const Inherited &) = delete;
    ~Inherited() { CloseHandle(handle_); }
    HANDLE get() const { return handle_; }

  private:
    HANDLE handle_;
};

// As the start-up code of the compiler's library takes it apart.
std::string quoted(const std::string &word) {
    std::string text = "\"";
    std::size_t backslashes = 0;
    for (const char c : word) {
        if (c == '"') text.append(backslashes + 1, '\\');
        backslashes = c == '\\' ? backslashes + 1 : 0;
        text += c;
    }
    return text.append(backslashes, '\\') + "\"";
}

// What was written with the platform's own line ends.
std::string read_text(const std::string &path) {
    std::string text = read_file(path);
    for (std::size_t at = 0; (at = text.find("\r\n", at)) != text.npos; ++at) text.erase(at, 1);
    return text;
}

}  // namespace

Outcome ProgramTest::run_process(const std::vector<std::string> &words, const RunOptions &options) const {
    const std::string out = options.output.empty() ? path("standard.out").string() : options.output;
    const std::string err = options.error.empty() ? path("standard.err").string() : options.error;
    std::string line = quoted(KV_TEST_PROGRAM);
    for (const std::string &word : words) line += " " + quoted(word);
    Outcome outcome;
    {
        const Inherited input(options.input.empty() ? "NUL" : options.input, GENERIC_READ, OPEN_EXISTING);
        // A console tells its state only to those who may read, too.
        const Inherited output(out, GENERIC_READ | GENERIC_WRITE, CREATE_ALWAYS);
        const Inherited errors(err, GENERIC_READ | GENERIC_WRITE, CREATE_ALWAYS);
        STARTUPINFOA start{};
        start.cb = sizeof start;
        start.dwFlags = STARTF_USESTDHANDLES;
        start.hStdInput = input.get();
        start.hStdOutput = output.get();
        start.hStdError = errors.get();
        PROCESS_INFORMATION process{};
        if (CreateProcessA(nullptr, line.data(), nullptr, nullptr, TRUE, 0, nullptr,
                           path("").string().c_str(), &start, &process) == 0) {
            ADD_FAILURE() << "the program cannot be started: error " << GetLastError();
            return outcome;
        }
        WaitForSingleObject(process.hProcess, INFINITE);
        DWORD code = 0;
        GetExitCodeProcess(process.hProcess, &code);
        outcome.code = static_cast<int>(code);
        CloseHandle(process.hThread);
        CloseHandle(process.hProcess);
    }
    if (options.output.empty()) outcome.out = read_text(out);
    if (options.error.empty()) outcome.err = read_text(err);
    std::filesystem::remove(path("standard.out"));
    std::filesystem::remove(path("standard.err"));
    return outcome;
}

// At a console, texts are the characters that they stand for, whatever its code page is.
TEST_F(ProgramTest, ConsolesOfEveryCodePage) {
    write("t.env", "[s]\r\n  b ={\r\n    \xE4 =\xDF\r\n  }\r\n");
    FreeConsole();
    ASSERT_NE(AllocConsole(), 0);
    for (const UINT page : {437U, 850U, 1252U, 65001U}) {
        const Inherited console("CONOUT$", GENERIC_READ | GENERIC_WRITE, OPEN_EXISTING);
        SetConsoleOutputCP(page);
        DWORD count = 0;
        FillConsoleOutputCharacterW(console.get(), L' ', 8 * 80, {0, 0}, &count);
        SetConsoleCursorPosition(console.get(), {0, 0});
        for (const char *how : {"--color=never", "--text"}) {
            EXPECT_EQ(run({"env", "show", "t.env", how}, {"CONOUT$", "CONOUT$"}).code, 0);
        }
        CONSOLE_SCREEN_BUFFER_INFO screen;
        GetConsoleScreenBufferInfo(console.get(), &screen);
        EXPECT_EQ(screen.dwCursorPosition.Y, 7);
        const wchar_t *const lines[] = {
            L"[s]",    L"\u2514\u2500\u2500 b", L"    \u2514\u2500\u2500 \u00E4 = \u00DF", L"[s]",
            L"  b ={", L"    \u00E4 =\u00DF"};
        for (SHORT y = 0; y < 6; ++y) {
            wchar_t text[17] = L"";
            ReadConsoleOutputCharacterW(console.get(), text, 16, {0, y}, &count);
            const std::wstring expected = lines[y];
            EXPECT_EQ(std::wstring(text, expected.size() + 1), expected + L' ') << page << ", line " << y;
        }
    }
    FreeConsole();
}

}  // namespace kvtest
