#pragma once

#include "app/app_model.h"
#include "support/fake_desktop.h"
#include "support/fake_disk.h"
#include "support/fake_notification_silencer.h"
#include "support/fake_shortcuts.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace brevlin::test {

/// A model over fakes in virtual time, in English with default settings unless a test stores other ones
/// first.
class ModelTest : public ::testing::Test, protected FakeDisk
{
protected:
    ModelTest()
    {
        center.settings.state = NotificationAuthorizationState::authorized;
        storePreferences([](AppPreferences& preferences) { preferences.appLanguage = AppLanguage::english; });
    }

    template <typename Change>
    void storePreferences(Change change)
    {
        PreferencesStore store(disk());
        AppPreferences preferences = store.load();
        change(preferences);
        ASSERT_TRUE(store.save(preferences));
    }

    AppModelParts makeParts()
    {
        return {clock,
                scheduler,
                events,
                std::make_unique<PreferencesStore>(disk()),
                std::make_unique<ActiveTimerPersistence>(disk()),
                std::make_unique<AddedPreferencesStore>(disk()),
                std::make_unique<SessionStore>(HistoryLocation{"/data/sessions-v1.json", std::nullopt},
                                               historyDisk()),
                std::make_unique<SessionDetailsStore>("/data/session-details-v1.json", historyDisk()),
                std::make_unique<HistoryBackups>(
                    BackupPaths{"/data/sessions-v1.json", "/data/session-details-v1.json", "/backups"},
                    historyDisk()),
                std::make_unique<NotificationService>(center),
                std::make_unique<AlertSoundService>(player, scheduler),
                std::make_unique<LaunchAtLoginService>(loginItem),
                {files, [this]() -> DocumentThread& { return thread; },
                 [](const std::string&) {
                     return TimeZone{};
                 }},
                {hookPrograms,
                 [this]() -> DocumentThread& {
                     return hookThread;
                 }},
                "de_DE",
                nullptr,
                &shortcuts,
                {&silencer, std::make_unique<SilenceNoteStore>(disk())}};
    }

    /// Starts the program (again): everything that was in memory is gone, what was stored is not.
    AppModel& launch()
    {
        modelOrNone.reset();
        modelOrNone = std::make_unique<AppModel>(makeParts());
        scheduler.runPending();
        return *modelOrNone;
    }
    AppModel& model() { return *modelOrNone; }
    /// Starts the program and a focus phase.
    AppModel& launchAndStart()
    {
        launch().start();
        return model();
    }

    DocumentDisk disk() { return *this; }
    /// What a restart would find.
    AppPreferences stored() { return PreferencesStore(disk()).load(); }
    TimerRunState runState() { return model().snapshot().runState; }
    std::string messageTitle()
    {
        return model().messages().appMessage() ? model().messages().appMessage()->title : "";
    }
    std::string messageDetail()
    {
        return model().messages().appMessage() ? model().messages().appMessage()->detail : "";
    }

    FakeSystemEvents events;
    FakeNotificationCenter center;
    FakeSoundPlayer player;
    FakeLoginItem loginItem;
    FakeNotificationSilencer silencer;
    FakeGlobalShortcuts shortcuts;
    std::shared_ptr<FakeHookPrograms> hookPrograms = std::make_shared<FakeHookPrograms>();
    FakeDocumentThread hookThread;
    std::unique_ptr<AppModel> modelOrNone;
};

} // namespace brevlin::test
