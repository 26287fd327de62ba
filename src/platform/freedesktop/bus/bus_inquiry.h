#pragma once

#include <chrono>
#include <functional>
#include <memory>

namespace brevlin {

/// A question that may never be answered, asked on a thread of its own, which is left behind where it still
/// waits when the program ends.
class BusInquiry final
{
public:
    enum class Answer { open, no, yes };

    /// The question must not use what may be gone before it returns.
    explicit BusInquiry(std::function<bool()> question);
    ~BusInquiry();
    BusInquiry(const BusInquiry&) = delete;
    BusInquiry& operator=(const BusInquiry&) = delete;

    Answer answer() const;
    /// Waits for the answer, at most this long.
    Answer answerWithin(std::chrono::milliseconds longest) const;
    /// Called once, on the inquiry's thread, if an answer is yet to come. Never after this object is gone.
    void setHandler(std::function<void()> handler);

private:
    struct Shared;

    std::shared_ptr<Shared> m_shared;
};

} // namespace brevlin
