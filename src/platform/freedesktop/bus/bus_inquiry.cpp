#include "platform/freedesktop/bus/bus_inquiry.h"

#include <condition_variable>
#include <mutex>
#include <thread>
#include <utility>

namespace brevlin {

struct BusInquiry::Shared
{
    std::mutex mutex;
    std::condition_variable answered;
    Answer answer = Answer::open;
    std::function<void()> handler;
};

BusInquiry::BusInquiry(std::function<bool()> question) : m_shared(std::make_shared<Shared>())
{
    std::thread([shared = m_shared, question = std::move(question)] {
        const Answer answer = question() ? Answer::yes : Answer::no;
        const std::scoped_lock lock(shared->mutex);
        shared->answer = answer;
        shared->answered.notify_all();
        if (shared->handler) {
            shared->handler();
        }
    }).detach();
}

BusInquiry::~BusInquiry()
{
    setHandler({});
}

BusInquiry::Answer BusInquiry::answer() const
{
    return answerWithin(std::chrono::milliseconds::zero());
}

BusInquiry::Answer BusInquiry::answerWithin(std::chrono::milliseconds longest) const
{
    std::unique_lock lock(m_shared->mutex);
    m_shared->answered.wait_for(lock, longest, [this] { return m_shared->answer != Answer::open; });
    return m_shared->answer;
}

void BusInquiry::setHandler(std::function<void()> handler)
{
    const std::scoped_lock lock(m_shared->mutex);
    m_shared->handler = std::move(handler);
}

} // namespace brevlin
