#include "command/line/output.h"

#include "command/line/usage.h"

#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <string>
#include <system_error>

namespace brevlin {

bool writeOut(std::string_view text)
{
    while (!text.empty()) {
        const ssize_t written = ::write(STDOUT_FILENO, text.data(), text.size());
        if (written < 0 && errno != EINTR) {
            return false;
        }
        text.remove_prefix(written > 0 ? static_cast<std::size_t>(written) : 0);
    }
    return true;
}

void complain(std::string_view sentence, std::string_view systemsWords)
{
    std::string text = "brevlin: " + std::string(sentence);
    if (!systemsWords.empty()) {
        text += " (" + std::string(systemsWords) + ")";
    }
    std::fprintf(stderr, "%s\n", text.c_str());
}

ExitStatus complain(const UsageError& error, AppLanguage language)
{
    const std::string text = "brevlin: " + std::string(error.problem.in(language)) +
                             (language == AppLanguage::english ? ": " : "：") + error.argument + "\n" +
                             std::string(usage(language));
    std::fputs(text.c_str(), stderr);
    return ExitStatus::wrongUsage;
}

ExitStatus outputFailed(AppLanguage language)
{
    if (errno == EPIPE) {
        return ExitStatus::done;
    }
    constexpr BilingualText sentence{"无法写到标准输出。", "Standard output cannot be written."};
    complain(sentence.in(language), std::generic_category().message(errno));
    return ExitStatus::failed;
}

} // namespace brevlin
