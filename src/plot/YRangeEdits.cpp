#include "plot/YRangeEdits.h"

#include <QDoubleValidator>
#include <QLineEdit>
#include <QLocale>
#include <QRectF>

#include <algorithm>
#include <cmath>

namespace {

QLineEdit *makeEdit(const QString &accessibleName, const QString &accessibleDescription) {
    auto *edit = new QLineEdit;
    auto *validator = new QDoubleValidator(edit);
    // A decimal point in every locale and no comma, as the texts are written and read.
    QLocale locale = QLocale::c();
    locale.setNumberOptions(QLocale::RejectGroupSeparator);
    validator->setLocale(locale);
    edit->setValidator(validator);
    edit->setAccessibleName(accessibleName);
    edit->setAccessibleDescription(accessibleDescription);
    // A variable dropped here is meant for the plot.
    edit->setAcceptDrops(false);
    return edit;
}

std::optional<double> numberIn(const QLineEdit &edit) {
    bool isNumber = false;
    const double number = edit.text().toDouble(&isNumber);
    return isNumber && std::isfinite(number) ? std::optional(number) : std::nullopt;
}

QString textOf(double value) {
    constexpr int digits = 6;
    return QString::number(value, 'g', digits);
}

} // namespace

YRangeEdits::YRangeEdits() {
    const QString description = tr("A number with a decimal point; Return applies it");
    minimum_ = makeEdit(tr("Lowest value of the left axis"), description);
    maximum_ = makeEdit(tr("Highest value of the left axis"), description);
}

void YRangeEdits::show(const QRectF &view) {
    if (isUsers_) {
        return;
    }
    const auto [low, high] = std::minmax({view.top() + view.height(), view.top()});
    minimum_->setText(textOf(low));
    maximum_->setText(textOf(high));
}

void YRangeEdits::noteEdit() {
    if (range()) {
        isUsers_ = true;
    }
}

std::optional<Extent> YRangeEdits::range() const {
    const auto first = numberIn(*minimum_);
    const auto second = numberIn(*maximum_);
    if (!first || !second) {
        return std::nullopt;
    }
    const auto [low, high] = std::minmax({*first, *second});
    return Extent{low, high};
}
