#pragma once

#include "plot/Extent.h"

#include <QCoreApplication>

#include <optional>

class QLineEdit;
class QRectF;

// The two edits of the left axis's range. They show the range in view until the user enters one, which stays
// from then on, to be applied again.
//
// Made without a parent: who puts the edits into a layout owns them, and they must outlive this.
class YRangeEdits {
    Q_DECLARE_TR_FUNCTIONS(YRangeEdits)

public:
    YRangeEdits();

    QLineEdit *minimum() const { return minimum_; }
    QLineEdit *maximum() const { return maximum_; }

    // Writes the values of what is in view, unless the range is the user's.
    void show(const QRectF &view);

    // To be called when an edit was left: two numbers are a range of the user's.
    void noteEdit();

    // The range between the two numbers, whichever is larger; none unless both edits hold one.
    std::optional<Extent> range() const;

private:
    QLineEdit *minimum_;
    QLineEdit *maximum_;
    bool isUsers_ = false;
};
