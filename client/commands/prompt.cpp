// kobctl alone at a terminal: a prompt that runs what is typed, like the lines of a batch. Where libedit is installed
// the line can be edited, completed with TAB, and called back with the arrows; it is loaded when it is there, and a
// router does not need it. What was typed may hold passwords, so that nothing of it is kept after the end.
#include <dlfcn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <clocale>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <cwchar>
#include <filesystem>
#include <iostream>

#include "client/commands/commands.h"
#include "host/state/database.h"
#include "host/state/folder.h"

namespace kobd::client
{
namespace
{
constexpr char kPrompt[] = "kobctl> ";
constexpr char kLibrary[] = "libedit.so.2";

using Generator = char* (*)(const char* text, int state);

// The functions and variables of libedit that are used here; their names and types are those of readline(3).
struct Editor
{
    char* (*readline)(const char* prompt) = nullptr;
    int (*add_history)(const char* line) = nullptr;
    char** (*completion_matches)(const char* text, Generator generator) = nullptr;
    char** line = nullptr;
    int* append = nullptr;
    int* over = nullptr;
};

Editor editor;
volatile sig_atomic_t ctrl_c = 0;  // whether it was pressed since the last prompt
Words candidates;                  // for the word in hand

template <class Symbol>
bool Find(void* library, const char* name, Symbol* symbol)
{
    *symbol = reinterpret_cast<Symbol>(dlsym(library, name));
    return *symbol != nullptr;
}

char* NextCandidate(const char*, int state)
{
    static size_t next;
    if (state == 0) next = 0;
    return next < candidates.size() ? strdup(candidates[next++].c_str()) : nullptr;
}

// The files whose names begin so, folders with a "/" behind them.
void AddFiles(const std::string& given, Words* found)
{
    const size_t slash = given.rfind('/') + 1;  // 0 where there is none
    const std::string folder = given.substr(0, slash);
    const std::string begin = given.substr(slash);
    std::error_code error;
    for (std::filesystem::directory_iterator file(folder.empty() ? "." : folder, error), end; !error && file != end;
         file.increment(error))
    {
        const std::string name = file->path().filename();
        if (!name.starts_with(begin) || (name[0] == '.' && begin.empty())) continue;
        found->push_back(folder + name + (file->is_directory(error) ? "/" : ""));
    }
}

// The word as it is typed outside of quotes.
std::string WithBackslashes(const std::string& word)
{
    std::string typed;
    for (const char c : word) typed += (strchr(" \t\\'\"#", c) != nullptr ? "\\" : "") + std::string(1, c);
    return typed;
}

// The word from `start` on is completed, also behind an opening quote; nothing is where a blank belongs to the word.
char** Complete(const char* text, int start, int)
{
    const std::string_view before = std::string_view(*editor.line).substr(0, static_cast<size_t>(start));
    const std::string quote(text, *text == '"' || *text == '\'' ? 1 : 0);
    Words words;
    Words word;
    if (editor.over != nullptr) *editor.over = 1;  // libedit looks for no files itself
    if (SplitLine(before, &words) || before.ends_with("\\ ")) return nullptr;
    (void)SplitLine(text, &word);
    words.push_back(word.empty() ? "" : word[0]);
    candidates.clear();
    Words found;
    const Outcome outcome = CommandComplete({}, words);
    for (const std::string_view line : LinesOf(outcome.text))
        if (line == ":files")
            AddFiles(words.back(), &found);
        else
            found.emplace_back(line.substr(0, line.find('\t')));
    const bool goes_on =
        std::ranges::all_of(found, [](const auto& one) { return one.ends_with('=') || one.ends_with('/'); });
    for (const std::string& one : found) candidates.push_back(quote.empty() ? WithBackslashes(one) : quote + one);
    if (editor.append != nullptr) *editor.append = goes_on ? 0 : quote.empty() ? ' ' : quote[0];
    return editor.completion_matches(text, NextCandidate);
}

// In place of the function of libedit, which goes on reading after a signal. Drops bytes that are no UTF-8.
int ReadCharacter(FILE* terminal)
{
    constexpr size_t kInvalid = -1;
    constexpr size_t kMoreFollows = -2;
    wchar_t character = 0;
    std::mbstate_t state = {};
    for (char byte = 0; ctrl_c == 0 && read(fileno(terminal), &byte, 1) == 1;)
    {
        const size_t used = std::mbrtowc(&character, &byte, 1, &state);
        if (used == kInvalid) state = {};
        if (used != kInvalid && used != kMoreFollows) return static_cast<int>(character);
    }
    return EOF;
}

bool LoadEditor()
{
    void* library = dlopen(kLibrary, RTLD_NOW);
    using Completion = char** (*)(const char*, int, int);
    Completion* completion = nullptr;
    static constexpr char kBreaks[] = " \t";  // not "=": NAME=VALUE is one word
    const char** breaks = nullptr;
    if (library == nullptr || !Find(library, "readline", &editor.readline) ||
        !Find(library, "add_history", &editor.add_history) || !Find(library, "rl_line_buffer", &editor.line) ||
        !Find(library, "rl_completion_matches", &editor.completion_matches) ||
        !Find(library, "rl_attempted_completion_function", &completion))
        return false;
    int (**read_character)(FILE*) = nullptr;
    if (Find(library, "rl_getc_function", &read_character)) *read_character = ReadCharacter;
    Find(library, "rl_completion_append_character", &editor.append);
    Find(library, "rl_attempted_completion_over", &editor.over);
    if (Find(library, "rl_completer_word_break_characters", &breaks)) *breaks = kBreaks;
    if (Find(library, "rl_basic_word_break_characters", &breaks)) *breaks = kBreaks;
    *completion = Complete;
    return true;
}

// The next line. False at the end of the input.
bool ReadLine(bool edited, std::string* line)
{
    if (!edited)
    {
        std::cout << kPrompt << std::flush;
        return static_cast<bool>(std::getline(std::cin, *line));
    }
    char* typed = editor.readline(kPrompt);
    if (typed == nullptr) return false;
    *line = typed;
    if (*typed != 0) editor.add_history(typed);
    free(typed);
    return true;
}

// Without SA_RESTART, so that Ctrl-C ends the reading of a line.
void NoteInterrupts()
{
    struct sigaction action = {};
    action.sa_handler = [](int) { ctrl_c = 1; };
    sigaction(SIGINT, &action, nullptr);
}

// The next line. Ctrl-C drops what was typed so far and begins another one.
bool ReadWholeLine(bool edited, std::string* line)
{
    for (;;)
    {
        ctrl_c = 0;
        if (ReadLine(edited, line)) return true;
        if (ctrl_c == 0) return false;
        std::cin.clear();
        clearerr(stdin);
        std::cout << "\n";
    }
}

// Runs the command in a child process, so that Ctrl-C ends only the command. Returns its exit status.
int RunApart(const Words& words)
{
    std::cout << std::flush;
    host::State()->Close();  // SQLite allows no connection to cross a fork
    const pid_t process = fork();
    if (process == 0)
    {
        signal(SIGINT, SIG_DFL);
        const int status = RunCommand(words, {});
        fflush(stdout);
        _exit(status);
    }
    int status = 0;
    pid_t ended = process;
    while (process != -1 && (ended = waitpid(process, &status, 0)) == -1 && errno == EINTR) continue;
    if (ended == -1) SayError(SystemFailure("the command cannot run").what);
    if (ended == -1) return 1;
    if (ctrl_c != 0) std::cout << "\n";
    if (ctrl_c == 0 && WIFSIGNALED(status))
        SayError(std::string("the command ended by signal: ") + strsignal(WTERMSIG(status)));
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);  // as shells tell it
}
}  // namespace

int RunPrompt()
{
    setlocale(LC_CTYPE, "C.UTF-8");  // for libedit; nothing else depends on it
    const bool edited = LoadEditor();
    std::cout << "Type a command, help, or exit." << (edited ? " TAB completes.\n" : "\n");
    NoteInterrupts();
    int status = 0;
    for (std::string line; ReadWholeLine(edited, &line);)
    {
        Words words;
        if (const Failure failure = SplitLine(line, &words))
            SayError(failure.what);
        else if (!words.empty() && (words[0] == "exit" || words[0] == "quit"))
            return status;
        else if (!words.empty())
            status = RunApart(words[0] == "kobctl" ? Words(words.begin() + 1, words.end()) : words);
    }
    std::cout << "\n";
    return status;
}
}  // namespace kobd::client
