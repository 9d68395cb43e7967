#pragma once

#include <QLabel>

/// A label that gives way: where its text has no room, it ends with an ellipsis, and the whole text
/// is told as a tip.
class ElidedLabel : public QLabel {
    Q_OBJECT

public:
    using QLabel::QLabel;

    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    bool event(QEvent* event) override;

private:
    QString Elided() const;
};
