// SPDX-License-Identifier: Apache-2.0
// Plays the cases of one golden file against the library, each in a process and a fresh world of
// its own. Needs no C++ runtime, so it runs on the router's build too. README.md beside this file
// describes the form of the cases.

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <new>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include "tests/golden/painted_stack.h"
#include "tests/support/buffer.h"
#include "tests/support/stage.h"

namespace {

using stage::Buffer;

constexpr int kMaxWords = 40;
constexpr int kMaxLines = 20000;
constexpr unsigned kCaseSeconds = 30;
constexpr std::size_t kIndent = 4;
constexpr std::size_t kTextRoom = 64; // key arguments are read beyond their text's end
constexpr std::size_t kScratchBytes = 4096;

struct File {
    const char *path;
    char *lines[kMaxLines + 1];
    int count;
};

File file;
int position; // the line being played, for messages

/// The deepest call of all cases, which run in processes of their own.
struct Deepest {
    std::size_t bytes;
    int line;
};

Deepest *deepest; // shared by the processes

void noteStack(std::size_t bytes) {
    if (bytes > deepest->bytes) {
        *deepest = {bytes, position + 1};
    }
}

// FRRUCI_STACK_FIGURE names a file for the figure.
bool reportStack() {
    (void)printf("stack: %zu bytes at most, in line %d\n", deepest->bytes, deepest->line);
    const char *path = getenv("FRRUCI_STACK_FIGURE");
    if (path == nullptr) {
        return true;
    }
    FILE *stream = fopen(path, "w");
    return stream != nullptr &&
           fprintf(stream, "%zu %s:%d\n", deepest->bytes, file.path, deepest->line) > 0 &&
           fclose(stream) == 0;
}

[[noreturn]] void stop(const char *what) {
    (void)fprintf(stderr, "%s:%d: %s\n", file.path, position + 1, what);
    _exit(2);
}

bool readFile(const char *path) {
    FILE *stream = fopen(path, "r");
    if (stream == nullptr) {
        return false;
    }
    file.path = path;
    char *line = nullptr;
    std::size_t room = 0;
    ssize_t length = 0;
    while ((length = getline(&line, &room, stream)) >= 0) {
        if (length > 0 && line[length - 1] == '\n') {
            line[length - 1] = '\0';
        }
        if (file.count == kMaxLines) {
            stop("too many lines");
        }
        file.lines[file.count++] = strdup(line);
    }
    free(line);
    (void)fclose(stream);
    return true;
}

// ---------------------------------------------------------------- words of a line

struct Word {
    char *text; // in room of its own, zeroes after it
    std::size_t size;
    bool quoted;
};

struct Words {
    Word at[kMaxWords];
    int count = 0;
};

char fromHex(const char *digits) {
    const char pair[3] = {digits[0], digits[1], '\0'};
    return static_cast<char>(strtol(pair, nullptr, 16));
}

/// The character after a backslash; moves from to its last character.
char escaped(const char *&from) {
    switch (*from) {
    case 'n':
        return '\n';
    case 'r':
        return '\r';
    case 't':
        return '\t';
    case 'x':
        from += 2;
        return fromHex(from - 1);
    default:
        return *from;
    }
}

const char *takeQuoted(const char *from, Buffer &text) {
    for (++from; *from != '"'; ++from) {
        if (*from == '\0') {
            stop("a quote is not closed");
        }
        if (*from == '\\') {
            ++from;
            text.append(escaped(from));
        } else {
            text.append(*from);
        }
    }
    return from + 1;
}

const char *takeBare(const char *from, Buffer &text) {
    for (; *from != '\0' && *from != ' '; ++from) {
        text.append(*from);
    }
    return from;
}

Words split(const char *line) {
    Words words;
    for (;;) {
        line += strspn(line, " ");
        if (*line == '\0') {
            return words;
        }
        if (words.count == kMaxWords) {
            stop("too many words");
        }
        Word &word = words.at[words.count++];
        word.quoted = *line == '"';
        Buffer text;
        line = word.quoted ? takeQuoted(line, text) : takeBare(line, text);
        word.size = text.size();
        word.text = static_cast<char *>(calloc(1, text.size() + kTextRoom));
        memcpy(word.text, text.text(), text.size());
    }
}

bool isWord(const Word &word, const char *text) {
    return !word.quoted && strcmp(word.text, text) == 0;
}

// ---------------------------------------------------------------- blocks

bool isInBlock(const char *line) {
    return strncmp(line, "    ", kIndent) == 0 || line[0] == '\0';
}

/// Takes the indented lines after the present one, without their indentation and without the empty
/// lines at their end.
void takeBlock(Buffer &block) {
    std::size_t end = 0;
    while (position + 1 < file.count && isInBlock(file.lines[position + 1])) {
        const char *line = file.lines[++position];
        block.append(line[0] == '\0' ? line : line + kIndent);
        block.append('\n');
        if (line[0] != '\0') {
            end = block.size();
        }
    }
    block.cut(end);
}

/// Standard output as a block shows it: control characters escaped, \e after a trailing space, \c
/// after a last line without newline.
void showOutput(const char *output, Buffer &shown) {
    while (*output != '\0') {
        const std::size_t length = strcspn(output, "\n");
        shown.appendEscaped(output, length);
        const bool ends = output[length] == '\n';
        if (!ends) {
            shown.append("\\c");
        } else if (length > 0 && output[length - 1] == ' ') {
            shown.append("\\e");
        }
        shown.append('\n');
        output += length + (ends ? 1 : 0);
    }
}

/// Equality in which a star of the pattern stands for any number.
bool matches(const char *pattern, const char *text) {
    for (; *pattern != '\0'; ++pattern) {
        if (*pattern == '*' && (*text == '-' || (*text >= '0' && *text <= '9'))) {
            text += *text == '-' ? 1 : 0;
            text += strspn(text, "0123456789");
            continue;
        }
        if (*pattern != *text++) {
            return false;
        }
    }
    return *text == '\0';
}

// ---------------------------------------------------------------- playing a case

class Player {
public:
    void prepare(int to);
    bool play(int from, int to);

private:
    using Step = void (Player::*)(const Words &);
    struct Keyword {
        const char *word;
        int minimum; // words, the keyword included
        Step step;
    };
    static const Keyword kKeywords[];

    void playLine(const char *line);
    void differ(const char *what, const char *wanted, const char *got);
    void compare(const char *what, bool same, const char *wanted, const char *got);

    void answer(const Words &words);
    void present(const Words &words) { stage_.present(words.at[1].text); }
    void absent(const Words &words) { stage_.absent(words.at[1].text); }
    void deaf(const Words &words) { stage_.deaf(words.at[1].text); }
    void noPipe(const Words &words) { stage_.noPipe(words.at[1].text); }
    void shell(const Words &words);
    void writeAFile(const Words &words) {
        stage::writeFile(words.at[1].text, words.at[2].text, words.at[2].size);
    }
    void store(const Words &words);
    void storeAfter(const Words &words);
    void call(const Words &words);
    void handler(const Words &words);
    void result(const Words &words);
    void expect(const Words &words);
    void log(const Words &words);
    void output(const Words &words);

    stage::Stage stage_;
    uint64_t result_ = 0;
    bool passed_ = true;
    alignas(std::max_align_t) char scratch_[kScratchBytes] = {};
};

constexpr Player::Keyword Player::kKeywords[] = {
    {"answer",      5, &Player::answer    },
    {"present",     2, &Player::present   },
    {"absent",      2, &Player::absent    },
    {"deaf",        2, &Player::deaf      },
    {"no-pipe",     2, &Player::noPipe    },
    {"shell",       4, &Player::shell     },
    {"file",        3, &Player::writeAFile},
    {"store",       2, &Player::store     },
    {"store-after", 2, &Player::storeAfter},
    {"call",        2, &Player::call      },
    {"handler",     2, &Player::handler   },
    {"result",      2, &Player::result    },
    {"expect",      1, &Player::expect    },
    {"log",         1, &Player::log       },
    {"stdout",      1, &Player::output    },
};

void Player::differ(const char *what, const char *wanted, const char *got) {
    passed_ = false;
    (void)fprintf(stderr, "%s:%d: %s\n--- wanted\n%s--- got\n%s---\n", file.path, position + 1,
                  what, wanted, got);
}

void Player::compare(const char *what, bool same, const char *wanted, const char *got) {
    if (!same) {
        differ(what, wanted, got);
    }
}

// answer DAEMON COMMAND [xTIMES] => CODE [OUTPUT]   (COMMAND * is any)
// answer DAEMON COMMAND => closes | silent | cut BYTES | raw BYTES
void Player::answer(const Words &words) {
    stage::Answer answer;
    int next = 3;
    if (words.at[next].text[0] == 'x' && words.count > next + 1) {
        answer.times = static_cast<int>(strtol(words.at[next++].text + 1, nullptr, 10));
    }
    if (!isWord(words.at[next], "=>") || words.count <= next + 1) {
        stop("answer DAEMON COMMAND [xTIMES] => ...");
    }
    const Word &what = words.at[++next];
    const Word *extra = words.count > next + 1 ? &words.at[next + 1] : nullptr;
    if (isWord(what, "closes")) {
        answer.closeEarly = true;
    } else if (isWord(what, "silent")) {
        answer.silent = true;
    } else if (isWord(what, "cut") && extra != nullptr) {
        answer.truncateTo = static_cast<int>(strtol(extra->text, nullptr, 10));
    } else if (isWord(what, "raw") && extra != nullptr) {
        answer.rawBytes = extra->text;
        answer.rawSize = static_cast<int>(extra->size);
    } else {
        answer.code = static_cast<uint8_t>(strtol(what.text, nullptr, 10));
        answer.text = extra == nullptr ? "" : extra->text;
    }
    if (isWord(words.at[2], "*")) {
        stage_.answerAll(words.at[1].text, answer);
    } else {
        stage_.answer(words.at[1].text, words.at[2].text, answer);
    }
}

// shell TEXT [xTIMES] writes PATH CONTENT | prints OUTPUT | fails | status NUMBER
void Player::shell(const Words &words) {
    stage::Shell shell;
    int next = 2;
    if (words.at[next].text[0] == 'x') {
        shell.times = static_cast<int>(strtol(words.at[next++].text + 1, nullptr, 10));
    }
    if (isWord(words.at[next], "writes") && words.count > next + 2) {
        shell.writeTo = words.at[next + 1].text;
        shell.text = words.at[next + 2].text;
    } else if (isWord(words.at[next], "prints") && words.count > next + 1) {
        shell.text = words.at[next + 1].text;
    } else if (isWord(words.at[next], "status") && words.count > next + 1) {
        shell.status = static_cast<int>(strtol(words.at[next + 1].text, nullptr, 0));
    } else if (isWord(words.at[next], "popen-fails")) {
        shell.fails = true;
    } else {
        stop("shell TEXT writes PATH CONTENT | prints OUTPUT | status NUMBER | popen-fails now");
    }
    stage_.shell(words.at[1].text, shell);
}

void storePath(const char *name, char (&path)[256]) {
    (void)snprintf(path, sizeof path, "/etc/config/%s", name);
}

void readInto(Buffer &text, const char *path) {
    FILE *stream = fopen(path, "r");
    for (int byte = 0; stream != nullptr && (byte = fgetc(stream)) != EOF;) {
        text.append(static_cast<char>(byte));
    }
    if (stream != nullptr) {
        (void)fclose(stream);
    }
}

// store NAME, with a block after it, or store NAME FILE, which is seen from the golden file's
// folder
void Player::store(const Words &words) {
    char path[256];
    storePath(words.at[1].text, path);
    Buffer content;
    if (words.count == 2) {
        takeBlock(content);
    } else {
        char source[512];
        const char *slash = strrchr(file.path, '/');
        const int folder = slash == nullptr ? 0 : static_cast<int>(slash - file.path) + 1;
        (void)snprintf(source, sizeof source, "%.*s%s", folder, file.path, words.at[2].text);
        readInto(content, source);
        if (content.size() == 0) {
            stop("cannot read the store file");
        }
    }
    stage::writeFile(path, content.text(), content.size());
}

void Player::storeAfter(const Words &words) {
    char path[256];
    storePath(words.at[1].text, path);
    Buffer wanted;
    Buffer got;
    takeBlock(wanted);
    readInto(got, path);
    // Files begin and end with empty lines, which a block cannot show.
    const char *text = got.text() + strspn(got.text(), "\n");
    std::size_t size = strlen(text);
    while (size > 1 && text[size - 1] == '\n' && text[size - 2] == '\n') {
        --size;
    }
    Buffer shown;
    shown.append(text, size);
    compare("the store file differs", strcmp(wanted.text(), shown.text()) == 0, wanted.text(),
            shown.text());
}

void *find(const char *name) {
    void *symbol = dlsym(RTLD_DEFAULT, name);
    if (symbol == nullptr) {
        stop("the library has no function of that name");
    }
    return symbol;
}

void Player::call(const Words &words) {
    // Arguments are numbers and pointers only, so all of them travel as 64-bit words in the order
    // given, whatever the function's real type.
    using Function =
        uint64_t (*)(uint64_t, uint64_t, uint64_t, uint64_t, uint64_t, uint64_t, uint64_t, uint64_t,
                     uint64_t, uint64_t, uint64_t, uint64_t, uint64_t, uint64_t);
    uint64_t at[kMaxWords] = {};
    for (int i = 2; i < words.count; ++i) {
        const Word &word = words.at[i];
        if (word.quoted) {
            at[i - 2] = reinterpret_cast<uint64_t>(word.text);
        } else if (isWord(word, "scratch")) {
            at[i - 2] = reinterpret_cast<uint64_t>(scratch_);
        } else if (!isWord(word, "null")) {
            char *end = nullptr;
            at[i - 2] = word.text[0] == '-' ? static_cast<uint64_t>(strtoll(word.text, &end, 0))
                                            : static_cast<uint64_t>(strtoull(word.text, &end, 0));
            if (*end != '\0') {
                stop("an argument is a number, a quoted text, null or scratch");
            }
        }
    }
    const auto function = reinterpret_cast<Function>(find(words.at[1].text));
    memset(scratch_, 0, sizeof scratch_);
    golden::paintStack();
    result_ = function(at[0], at[1], at[2], at[3], at[4], at[5], at[6], at[7], at[8], at[9], at[10],
                       at[11], at[12], at[13]);
    noteStack(golden::usedStack());
}

void Player::handler(const Words &words) {
    using Handler = int32_t (*)(int32_t, char **);
    char *vector[kMaxWords + 1] = {};
    for (int i = 2; i < words.count; ++i) {
        vector[i - 2] = isWord(words.at[i], "null") ? nullptr : words.at[i].text;
    }
    const auto function = reinterpret_cast<Handler>(find(words.at[1].text));
    golden::paintStack();
    result_ = static_cast<uint64_t>(function(words.count - 2, vector));
    noteStack(golden::usedStack());
}

void Player::result(const Words &words) {
    const auto wanted = static_cast<uint32_t>(strtoll(words.at[1].text, nullptr, 0));
    const auto got = static_cast<uint32_t>(result_);
    if (wanted != got) {
        passed_ = false;
        (void)fprintf(stderr, "%s:%d: result %d, not %d\n", file.path, position + 1,
                      static_cast<int32_t>(got), static_cast<int32_t>(wanted));
    }
}

void Player::expect(const Words &) {
    Buffer wanted;
    takeBlock(wanted);
    const char *got = stage_.trace();
    compare("the trace differs", strcmp(wanted.text(), got) == 0, wanted.text(), got);
}

void Player::log(const Words &) {
    Buffer wanted;
    takeBlock(wanted);
    Buffer got;
    for (const char *line = stage_.log(); *line != '\0';) { // empty lines cannot stand in a block
        const std::size_t length = strcspn(line, "\n");
        if (length > 0) {
            got.append(line, length);
            got.append('\n');
        }
        line += length + (line[length] == '\n' ? 1 : 0);
    }
    compare("the log differs", matches(wanted.text(), got.text()), wanted.text(), got.text());
}

void Player::output(const Words &) {
    Buffer wanted;
    takeBlock(wanted);
    Buffer got;
    showOutput(stage_.output(), got);
    compare("standard output differs", strcmp(wanted.text(), got.text()) == 0, wanted.text(),
            got.text());
}

void Player::playLine(const char *line) {
    if (line[0] == '\0' || line[0] == '#') {
        return;
    }
    const Words words = split(line);
    for (const Keyword &keyword : kKeywords) {
        if (words.count > 0 && isWord(words.at[0], keyword.word)) {
            if (words.count < keyword.minimum) {
                stop("too few words");
            }
            (this->*keyword.step)(words);
            return;
        }
    }
    stop("unknown keyword");
}

void Player::prepare(int to) {
    for (position = 0; position < to; ++position) {
        playLine(file.lines[position]);
    }
    (void)stage_.trace(); // cases begin after the preparation
    (void)stage_.log();
    (void)stage_.output();
}

bool Player::play(int from, int to) {
    for (position = from; position < to; ++position) {
        playLine(file.lines[position]);
    }
    const char *rest = stage_.trace();
    compare("more left the library than the case expects", rest[0] == '\0', "", rest);
    return passed_;
}

bool isCase(int line) {
    return strncmp(file.lines[line], "case ", 5) == 0;
}

int endOfCase(int begin) {
    int end = begin + 1;
    while (end < file.count && !isCase(end)) {
        ++end;
    }
    return end;
}

int firstCase() {
    int line = 0;
    while (line < file.count && !isCase(line)) {
        ++line;
    }
    return line;
}

/// Plays one case in a process of its own, the lines before the first case in front of it.
bool playCase(int begin) {
    (void)fflush(stdout);
    const pid_t child = fork();
    if (child == 0) {
        alarm(kCaseSeconds);
        void *memory = malloc(sizeof(Player));
        auto *player = new (memory) Player();
        player->prepare(firstCase());
        const bool passed = player->play(begin + 1, endOfCase(begin));
        player->~Player();
        free(memory);
        _exit(passed ? 0 : 1);
    }
    int status = 0;
    if (child < 0 || waitpid(child, &status, 0) != child) {
        perror("player");
        exit(2);
    }
    if (WIFSIGNALED(status)) {
        (void)printf("ended by signal %d\n", WTERMSIG(status));
    }
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

} // namespace

int main(int argc, char **argv) {
    if (argc != 2 && argc != 3) {
        (void)fprintf(stderr, "usage: player FILE [CASE]\n");
        return 2;
    }
    if (!readFile(argv[1])) {
        perror(argv[1]);
        return 2;
    }
    void *shared =
        mmap(nullptr, sizeof(Deepest), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    if (shared == MAP_FAILED) {
        perror("player");
        return 2;
    }
    deepest = new (shared) Deepest();
    int passed = 0;
    int failed = 0;
    for (int line = 0; line < file.count; ++line) {
        if (!isCase(line) || (argc == 3 && strstr(file.lines[line], argv[2]) == nullptr)) {
            continue;
        }
        if (playCase(line)) {
            ++passed;
        } else {
            ++failed;
            (void)printf("FAILED %s:%d: %s\n", argv[1], line + 1, file.lines[line]);
        }
    }
    (void)printf("%d passed, %d failed\n", passed, failed);
    return reportStack() && failed == 0 && passed > 0 ? 0 : 1;
}
