#pragma once

#include <QObject>

class KlipraMac;

namespace Ui {
class MainWindow;
}

/// The zoom factor at which a range fills most of what is visible, within what is allowed.
/// @param rangeBytes   more than 0
/// @param lengthBytes  of the whole, which is what is visible at 1
int ZoomToFit(unsigned long long rangeBytes, unsigned long long lengthBytes, int maxZoom);

/// Goes about on the strip: fine and large steps, to the marks, to the range as a whole.
class StripNavigator : public QObject {
    Q_OBJECT

public:
    /// @param ui  the window's, whose menu items this one follows; has to live longer
    explicit StripNavigator(const Ui::MainWindow& ui);

    /// Whose position is moved; not owned, null for none.
    void SetEngine(KlipraMac* engine);

Q_SIGNALS:
    void positionDidMove();

private:
    void MoveBySteps(double steps);
    void MoveByUnits(int units);
    void GoTo(unsigned long long position);
    void ZoomToRange();
    unsigned long long UnitBytes();

    const Ui::MainWindow& m_ui;
    KlipraMac* m_engine = nullptr;
    unsigned long long m_unitBytes = 0; // of a fine step; 0: not known yet
};
