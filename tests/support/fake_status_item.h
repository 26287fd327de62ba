#pragma once

#include "platform/status_item.h"

#include <utility>

namespace brevlin::test {

/// Keeps what it was last given, and counts the pictures.
class FakeStatusItem final : public StatusItem
{
public:
    void setPictures(const StatusPictures& value) override
    {
        pictures = value;
        ++pictureChanges;
    }
    void setTexts(const StatusTexts& value) override { texts = value; }
    void setMenu(const std::vector<StatusMenuRow>& value) override { rows = value; }
    void setObserver(Observer value) override { observer = std::move(value); }

    StatusPictures pictures;
    StatusTexts texts;
    std::vector<StatusMenuRow> rows;
    Observer observer;
    int pictureChanges = 0;
};

} // namespace brevlin::test
