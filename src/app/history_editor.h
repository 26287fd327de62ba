#pragma once

#include "app/undo_offer.h"
#include "core/session_details.h"
#include "storage/session_details_store.h"
#include "storage/session_store.h"

#include <QObject>

#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace brevlin {

/// A record and what else is known of its phase.
struct KeptSession
{
    SessionRecord record;
    SessionDetails details;

    bool operator==(const KeptSession&) const = default;
};

/// Corrects the history by steps that can be taken back and made again, at least the last fifty of a run. A
/// step changes records and their details together; one that the disk refuses is taken back and forgotten.
class HistoryEditor final : public QObject
{
    Q_OBJECT

public:
    enum class StepKind { addition, change, removal, renaming, decision, import, restoration };

    static constexpr std::size_t mostSteps = 100;

    HistoryEditor(SessionStore& records, SessionDetailsStore& details, UndoOffer& offer);

    /// The record of this identifier; none where there is none.
    const SessionRecord* find(const Uuid& id) const;
    const SessionDetails& detailsOf(const Uuid& id) const { return m_details.of(id); }

    /// A record of a phase that was not recorded. Its identifier is new.
    void add(const SessionRecord& record);
    /// The record takes the place of the one with its identifier; what was decided of absences holds for it.
    void change(const SessionRecord& corrected);
    void remove(const std::vector<Uuid>& ids);
    /// In every record that has exactly this intention; an empty one is none.
    void renameIntention(const std::string& from, const std::string& to);
    /// `index` is the absence's place in the details.
    void decide(const Uuid& id, std::size_t index, AbsenceDecision decision);
    /// Adds records with identifiers that no record has.
    void import(std::vector<SessionRecord> records, SessionDetailsById details);
    /// The whole history becomes this one.
    void restore(std::vector<SessionRecord> records, SessionDetailsById details);
    /// Removes every record, and once they are gone what else is known and the steps: final.
    void clear();
    /// Removes the details and the steps.
    void forget();

    std::optional<StepKind> undoable() const;
    std::optional<StepKind> redoable() const;
    void undo();
    void redo();

    /// Finishes what a crash left undone between two files; once both have been read.
    void settle();
    /// The edit of this number was refused, and the records are those of before.
    void editTakenBack(std::uint64_t number);

Q_SIGNALS:
    /// Records or details are other ones.
    void changed();
    /// Another step can be taken back or made again.
    void stepsChanged();

private:
    struct Step
    {
        StepKind kind;
        std::vector<KeptSession> before;
        std::vector<KeptSession> after;
        std::uint64_t edit = 0; // the latest of the store that carried it out or took it back
        bool isDone = true;
    };

    void follow(Step& step, std::uint64_t edit);
    KeptSession kept(const SessionRecord& record) const { return {record, m_details.of(record.id)}; }
    std::vector<KeptSession> keptOf(std::vector<Uuid> ids) const;
    /// False where it was refused by then.
    bool carryOut(StepKind kind, std::vector<KeptSession> before, std::vector<KeptSession> after);
    std::uint64_t replace(const std::vector<KeptSession>& before, const std::vector<KeptSession>& after);
    void holdOrder(std::vector<KeptSession>& before, std::vector<KeptSession>& after) const;
    void offer(UndoOffer::Kind kind, std::size_t count);
    std::optional<SessionRecord> settled(const SessionRecord& record, const SessionDetails& details) const;

    SessionStore& m_records;
    SessionDetailsStore& m_details;
    UndoOffer& m_offer;
    std::deque<Step> m_steps;    // the oldest first
    std::uint64_t m_refused = 0; // the latest edit that was
    std::size_t m_doneCount = 0; // of the steps, from the front; the others were taken back
};

} // namespace brevlin
