#pragma once

#include "core/key_combination.h"
#include "ui/controls/plain_button.h"

#include <QString>

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

namespace brevlin {

/// Shows a key combination and, once pressed, takes the next one that is held. Until then the whole keyboard
/// is its own, also what the window manager would act on: Escape leaves all as it was, Backspace means none.
class KeyRecorder final : public PlainButton
{
    Q_OBJECT

public:
    struct Texts
    {
        QString title; ///< of what the key is for, with what separates it from the key; read aloud
        QString none;
        QString prompt;
    };
    enum class Refusal { needsModifier, unknownKey };
    /// The key that has a native scan code.
    using KeyAt = std::function<std::optional<std::string>(std::uint32_t scanCode)>;

    explicit KeyRecorder(KeyAt keyAt, QWidget* parent = nullptr);

    void setTexts(const Texts& texts);
    void setKey(const std::optional<KeyCombination>& key);
    bool isRecording() const { return m_isRecording; }
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

Q_SIGNALS:
    void recorded(const KeyCombination& key);
    void cleared();
    /// It goes on recording.
    void refused(Refusal reason);
    void recordingChanged(bool isRecording);

protected:
    bool event(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void setRecording(bool isRecording);
    void take(const QKeyEvent& event);
    void showHeld(Qt::KeyboardModifiers modifiers);
    void refreshText();

    KeyAt m_keyAt;
    Texts m_texts;
    std::optional<KeyCombination> m_key;
    QString m_held;
    bool m_isRecording = false;
};

} // namespace brevlin
