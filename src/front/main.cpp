// "brevlin" itself: hands over to the program that is needed. It loads nothing, for it stands before each.

#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstring>
#include <initializer_list>

namespace {

/// Which program the first argument asks for.
const char* programFor(const char* word)
{
    if (word == nullptr) {
        return "brevlin-window";
    }
    if (std::strcmp(word, "export") == 0 || std::strcmp(word, "import") == 0) {
        return "brevlin-exchange";
    }
    const bool isQuestion = std::strcmp(word, "--help") == 0 || std::strcmp(word, "-h") == 0 ||
                            std::strcmp(word, "--version") == 0;
    return word[0] == '-' && !isQuestion ? "brevlin-window" : "brevlin-verb"; // options are the toolkit's
}

} // namespace

int main(int /*argc*/, char** argv)
{
    const char* program = programFor(argv[0] == nullptr ? nullptr : argv[1]);
    char folder[PATH_MAX];
    const ssize_t size = ::readlink("/proc/self/exe", folder, sizeof folder - 1);
    if (size > 0) {
        folder[size] = '\0';
        char* name = std::strrchr(folder, '/') + 1;
        *name = '\0';
        // In the folder of a build they lie side by side.
        for (const char* way : {"", BREVLIN_OTHERS_FOLDER "/"}) {
            char path[2 * PATH_MAX];
            std::snprintf(path, sizeof path, "%s%s%s", folder, way, program);
            ::execv(path, argv);
        }
    }
    std::fprintf(stderr, "brevlin: %s: %s\n", program, std::strerror(errno));
    return 1;
}
