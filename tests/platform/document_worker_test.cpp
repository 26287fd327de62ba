#include "platform/freedesktop/event_loop/document_worker.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

#include <algorithm>
#include <future>
#include <memory>
#include <thread>
#include <vector>

namespace brevlin {
namespace {

TEST(DocumentWorker, works_in_order_beside_the_main_thread_reports_on_it_and_does_all_before_it_ends)
{
    const auto mainThread = std::this_thread::get_id();
    std::vector<int> done;
    std::vector<int> reported;
    auto worker = std::make_unique<DocumentWorker>();
    for (int number = 0; number < 100; ++number) {
        worker->post([&, number]() -> DocumentThread::Completion {
            EXPECT_NE(std::this_thread::get_id(), mainThread);
            done.push_back(number);
            return [&, number] {
                EXPECT_EQ(std::this_thread::get_id(), mainThread);
                reported.push_back(number);
                if (number == 99) {
                    worker->post([&]() -> DocumentThread::Completion {
                        return [&] {
                            reported.push_back(100);
                        };
                    });
                }
            };
        });
    }
    EXPECT_TRUE(worker->drain(Seconds{10}));
    for (int number = 100; number < 110; ++number) {
        worker->post([&, number]() -> DocumentThread::Completion {
            done.push_back(number);
            return {};
        });
    }
    worker.reset();
    ASSERT_EQ(done.size(), 110U);
    ASSERT_EQ(reported.size(), 101U) << "what a completion posts is waited for too";
    EXPECT_TRUE(std::is_sorted(done.begin(), done.end()));
    EXPECT_TRUE(std::is_sorted(reported.begin(), reported.end()));
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

} // namespace
} // namespace brevlin
