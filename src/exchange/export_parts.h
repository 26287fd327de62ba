#pragma once

#include "exchange/history_export.h"

#include <memory>
#include <span>
#include <string>
#include <string_view>

namespace brevlin {

/// Collects text and hands it on in pieces.
class PieceBuffer final
{
public:
    explicit PieceBuffer(const PieceSink& sink) : m_sink(sink) {}

    /// To append to.
    std::string& text() { return m_text; }
    /// To be called now and then; false once the sink wants no more.
    bool handOn()
    {
        constexpr std::size_t pieceSize = std::size_t{1} << 16;
        return m_text.size() < pieceSize || finish();
    }
    bool finish()
    {
        m_isWanted = m_isWanted && (m_text.empty() || m_sink(m_text));
        m_text.clear();
        return m_isWanted;
    }

private:
    const PieceSink& m_sink;
    std::string m_text;
    bool m_isWanted = true;
};

/// Writes the records of one export in one form.
class RecordExporter
{
public:
    virtual ~RecordExporter() = default;

    virtual void begin(std::string& text) = 0;
    /// Whether the form has a place for such a record.
    virtual bool takes(const SessionRecord& /*record*/) const { return true; }
    /// False for a record that the form cannot express; description() then says why.
    virtual bool add(const SessionRecord& record, const SessionDetails& details, std::string& text) = 0;
    /// What remains; false as add(), or because the buffer is wanted no more.
    virtual bool end(PieceBuffer& buffer) = 0;
    virtual std::string description() const { return {}; } ///< empty where every record could be expressed
};

std::unique_ptr<RecordExporter> makeCsvExporter(const ExportOptions& options);
std::unique_ptr<RecordExporter> makeJsonExporter(const ExportOptions& options);
/// Nothing where the library is not there; the error says so.
Expected<std::unique_ptr<RecordExporter>, ExportError> makeCalendarExporter(const ExportOptions& options);
std::unique_ptr<RecordExporter> makeTimewarriorExporter();

} // namespace brevlin
