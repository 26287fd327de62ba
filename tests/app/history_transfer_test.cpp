#include "app/model_fixture.h"

namespace brevlin {
namespace {

class HistoryTransferTest : public test::ModelTest
{
protected:
    HistoryTransferTest()
    {
        launchAndStart();
        scheduler.advance(Seconds{1500});
    }

    /// "1", or why not.
    std::string exported(const ExportChoice& choice)
    {
        std::string result;
        model().historyTransfer().exportTo("/out", choice, "en", AppLanguage::english,
                                           [&result](const Expected<std::size_t, TransferError>& outcome) {
                                               result = outcome
                                                            ? std::to_string(*outcome)
                                                            : std::string(outcome.error().sentence.english);
                                           });
        return result;
    }
    std::shared_ptr<HistoryTransfer::Reading> plan()
    {
        return model().historyTransfer().planImport(
            "/in", [this](HistoryTransfer::Plan plan) { m_plan = std::move(plan); });
    }
    std::size_t recordCount() { return model().sessions().size(); }
    std::size_t backupCount() const
    {
        std::size_t count = 0;
        for (const auto& [name, bytes] : files.files) {
            count += name.starts_with("/backups/sessions-") ? 1 : 0;
        }
        return count;
    }

    std::optional<HistoryTransfer::Plan> m_plan;
};

TEST_F(HistoryTransferTest, a_file_is_written_as_a_whole_or_not_at_all)
{
    const ExportChoice csv;
    const ExportChoice earlier{
        ExportFormat::json, {{}, model().calendar().localDay(clock.now()) - std::chrono::days{1}, {}}, false};
    EXPECT_EQ(exported(csv), "1");
    EXPECT_NE(files.files["/out"].find(model().sessions().front().id.text()), std::string::npos);
    EXPECT_EQ(exported(earlier), "0");
    const std::string before = files.files["/out"];
    files.failures.failFrom(1);
    EXPECT_EQ(exported(csv), "The file cannot be written.");
    files.failures.failNothing();
    EXPECT_EQ(files.files["/out"], before);
    thread.runsAtOnce = false;
    EXPECT_EQ(exported(csv), "");
    modelOrNone.reset();
    thread.runAll();
    EXPECT_EQ(files.files["/out"], before) << "the program ends";
}

TEST_F(HistoryTransferTest, an_import_adds_only_what_is_new_by_then)
{
    ASSERT_EQ(exported({}), "1");
    model().advance();
    scheduler.advance(Seconds{300});
    ASSERT_EQ(recordCount(), 2U);
    files.files["/in"] = files.files["/out"];
    model().deleteSession(model().sessions().back());
    for (const bool isFirst : {true, false}) {
        plan();
        ASSERT_TRUE(m_plan && *m_plan);
        EXPECT_EQ((**m_plan).records.size(), isFirst ? 1U : 0U);
        const ImportPlan same = **m_plan;
        model().historyTransfer().adopt(**m_plan);
        model().historyTransfer().adopt(same);
        EXPECT_EQ(recordCount(), 2U);
    }
    model().historyEditor().undo();
    EXPECT_EQ(recordCount(), 1U) << "in one step";
}

TEST_F(HistoryTransferTest, an_import_can_be_called_off_and_outlives_nobody)
{
    ASSERT_EQ(exported({}), "1");
    files.files["/in"] = files.files["/out"];
    thread.runsAtOnce = false;
    plan()->isCancelled = true;
    thread.runAll();
    ASSERT_TRUE(m_plan && !*m_plan);
    EXPECT_EQ(m_plan->error().reason, ImportError::Reason::cancelled);
    m_plan.reset();
    plan();
    modelOrNone.reset();
    thread.runAll();
    EXPECT_FALSE(m_plan);
}

TEST_F(HistoryTransferTest, a_day_with_a_record_has_a_backup_until_everything_is_cleared)
{
    EXPECT_EQ(backupCount(), 1U);
    model().advance();
    scheduler.advance(Seconds{300});
    EXPECT_EQ(backupCount(), 1U);
    scheduler.advance(Seconds{24.0 * 3600});
    EXPECT_EQ(backupCount(), 1U) << "without a record there is nothing new";
    model().advance();
    scheduler.advance(Seconds{1500});
    EXPECT_EQ(backupCount(), 2U);
    model().clearHistory();
    EXPECT_EQ(backupCount(), 0U);
}

} // namespace
} // namespace brevlin
