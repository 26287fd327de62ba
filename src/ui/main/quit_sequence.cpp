#include "ui/main/quit_sequence.h"

#include "app/app_model.h"
#include "ui/main/message_dialog.h"

#include <cstdio>

namespace brevlin {

namespace {

constexpr BilingualText notSavedTitle{"有内容未能保存", "Not everything could be saved"};
constexpr BilingualText notSavedText{
    "磁盘未能写入以下内容，程序结束后将会丢失：",
    "The disk did not take the following, which is lost when the program ends: "};

// A quick disk is not to be waited for.
constexpr Seconds lookInterval{0.02};
constexpr int looksUntilRetry = 50;
constexpr int mostLooks = static_cast<int>(QuitSequence::longestWait / lookInterval);

} // namespace

QuitSequence::QuitSequence(AppModel& model, DocumentThread& documents, TaskScheduler& scheduler,
                           QObject* parent)
    : QObject(parent), m_model(model), m_documents(documents), m_scheduler(scheduler)
{}

void QuitSequence::begin(Origin origin)
{
    if (m_looks > 0) {
        return;
    }
    m_origin = origin;
    m_model.focusQuiet().end();
    Q_EMIT began();
    look();
}

void QuitSequence::look()
{
    // What the disk refuses is tried again; what it is slow with is waited for.
    if (m_looks % looksUntilRetry == 0) {
        const bool isLastRetry = m_looks + looksUntilRetry >= mostLooks;
        m_model.retryWrites(isLastRetry ? HistoryFile::Patience::ended : HistoryFile::Patience::waits);
    }
    ++m_looks;
    if (m_model.focusQuiet().isAtRest() && m_documents.drain(Seconds::zero()) && m_model.unsaved().empty()) {
        Q_EMIT finished();
    } else if (m_looks > mostLooks) {
        tell();
    } else {
        m_nextLook = m_scheduler.after(lookInterval, [this] { look(); });
    }
}

void QuitSequence::finishNow()
{
    bool isDone = false;
    m_model.focusQuiet().giveBackNow(); // which leaves a note to be written
    for (const auto patience : {HistoryFile::Patience::waits, HistoryFile::Patience::ended}) {
        m_model.retryWrites(patience);
        isDone = m_documents.drain(longestWait / 2.0);
    }
    if (!isDone || !m_model.unsaved().empty()) {
        std::fprintf(stderr, "Brevlin: %s\n", sentence().c_str());
    }
}

void QuitSequence::tell()
{
    const std::string text = sentence();
    std::fprintf(stderr, "Brevlin: %s\n", text.c_str());
    const AppLanguage language = m_model.language();
    m_dialog =
        new MessageDialog({Uuid::random(), std::string(notSavedTitle.in(language)), text}, language, nullptr);
    connect(m_dialog, &QDialog::finished, this, &QuitSequence::finished);
    m_dialog->show();
    if (m_origin == Origin::system) {
        m_nextLook = m_scheduler.after(longestReading, [this] { Q_EMIT finished(); });
    }
}

std::string QuitSequence::sentence() const
{
    const AppLanguage language = m_model.language();
    std::string list;
    for (const std::string& document : m_model.unsaved()) {
        if (!list.empty()) {
            list += language == AppLanguage::english ? ", " : "、";
        }
        list += document;
    }
    if (list.empty()) {
        list = language == AppLanguage::english ? "places of the windows" : "窗口位置";
    }
    return std::string(notSavedText.in(language)) + list + (language == AppLanguage::english ? "." : "。");
}

} // namespace brevlin
