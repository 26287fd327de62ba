#include "app/undo_offer.h"

#include <utility>

namespace brevlin {

void UndoOffer::make(Offer offer)
{
    m_offer = std::move(offer);
    m_end = m_scheduler.after(duration, [this] { withdraw(); });
    Q_EMIT changed();
}

void UndoOffer::withdraw()
{
    m_end.reset();
    if (std::exchange(m_offer, std::nullopt)) {
        Q_EMIT changed();
    }
}

void UndoOffer::withdrawTimers()
{
    if (m_offer && m_offer->isOfTimer()) {
        withdraw();
    }
}

void UndoOffer::accept()
{
    if (const auto offer = m_offer) {
        withdraw();
        offer->takeBack();
    }
}

} // namespace brevlin
