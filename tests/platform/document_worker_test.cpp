#include "platform/freedesktop/event_loop/document_worker.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

#include <future>
#include <memory>
#include <thread>
#include <vector>

namespace brevlin {
namespace {

TEST(DocumentWorker, works_in_order_beside_the_main_thread_and_reports_on_it)
{
    const auto mainThread = std::this_thread::get_id();
    std::vector<int> done;
    std::vector<int> reported;
    DocumentWorker worker;
    for (int number = 0; number < 100; ++number) {
        worker.post([&, number]() -> DocumentThread::Completion {
            EXPECT_NE(std::this_thread::get_id(), mainThread);
            done.push_back(number);
            return [&, number] {
                EXPECT_EQ(std::this_thread::get_id(), mainThread);
                reported.push_back(number);
                if (number == 99) {
                    worker.post([&]() -> DocumentThread::Completion {
                        return [&] {
                            reported.push_back(100);
                        };
                    });
                }
            };
        });
    }
    EXPECT_TRUE(worker.drain(Seconds{10}));
    ASSERT_EQ(done.size(), 100U);
    ASSERT_EQ(reported.size(), 101U) << "what a completion posts is waited for too";
    for (int number = 0; number < 100; ++number) {
        EXPECT_EQ(done[static_cast<std::size_t>(number)], number);
        EXPECT_EQ(reported[static_cast<std::size_t>(number)], number);
    }
}

TEST(DocumentWorker, a_disk_that_does_not_answer_holds_nobody_longer_than_he_wants)
{
    std::promise<void> answer;
    bool isReported = false;
    DocumentWorker worker;
    worker.post([&, answered = answer.get_future().share()]() -> DocumentThread::Completion {
        answered.wait();
        return [&] {
            isReported = true;
        };
    });
    EXPECT_FALSE(worker.drain(Seconds::zero()));
    answer.set_value();
    while (!isReported) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    EXPECT_TRUE(worker.drain(Seconds::zero()));
}

TEST(DocumentWorker, does_what_was_posted_before_it_ends)
{
    int done = 0;
    {
        DocumentWorker worker;
        for (int number = 0; number < 10; ++number) {
            worker.post([&]() -> DocumentThread::Completion {
                ++done;
                return {};
            });
        }
    }
    EXPECT_EQ(done, 10);
}

} // namespace
} // namespace brevlin
