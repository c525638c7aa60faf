#pragma once
// One widget per control model. Each shows its model at once when the model
// changes (the model notifies its observers) and hands what the user does to
// the model as the model's own actions, so that the model raises its events
// in the order a Windows form would: key press, change, and validation when
// the focus leaves (the form view reports focus changes to the form).

#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QTreeWidget>
#include <QWidget>

#include "controls/Control.h"
#include "controls/QVButtons.h"
#include "controls/QVLabel.h"
#include "controls/QVTextBox.h"

namespace qvrl::qt {

// The widget of a control, named by the control's key ("TXTWIND(0)") so that
// the platform finds it when the model moves the focus.
QWidget* MakeControlWidget(Control& control, QWidget* parent);

// The model behind a widget made by MakeControlWidget, or null.
Control* ControlOf(const QWidget* widget);

// The widget of a model colour (OLE system colours map to the palette).
QColor ColourOf(uint32_t oleColour, const QPalette& palette);

// Names the widget after the control, then Follow.
void Bind(Control& control, QWidget* widget, std::function<void()> sync);
// Calls sync now and whenever the model notifies, for as long as the widget lives.
void Follow(Control& control, QWidget* widget, std::function<void()> sync);

// Whether the window of a widget was detached from its form (the form is
// unloaded; the window goes when Qt gets to it). Such a widget hands the
// user's actions on to no model.
bool Detached(const QWidget* widget);

class QVTextBoxWidget : public QWidget {
    Q_OBJECT
public:
    QVTextBoxWidget(QVTextBox& model, QWidget* parent);
    // The edit goes after this part of the widget: it must not call back.
    ~QVTextBoxWidget() override;
    QLineEdit* Edit() const { return edit_; }
    QLabel* RemarkLabel() const { return remark_; }
    QLabel* CaptionLabel() const { return caption_; }
    QLabel* EqualsLabel() const { return equals_; }
    QLabel* ValueLabel() const { return value_; }
    QLabel* DimensionLabel() const { return dimension_; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void Sync();
    void Type(const std::string& utf8);
    void SelectionToModel();
    QVTextBox& model_;
    QLabel* remark_;
    QLabel* caption_;
    QLabel* equals_;
    QLineEdit* edit_;
    QLabel* value_;
    QLabel* dimension_;
    bool syncing_ = false;
};

class QVButtonsWidget : public QWidget {
    Q_OBJECT
public:
    QVButtonsWidget(QVButtons& model, QWidget* parent);
    QPushButton* Ok() const { return ok_; }
    QPushButton* Cancel() const { return cancel_; }

private:
    void Sync();
    QVButtons& model_;
    QPushButton* ok_;
    QPushButton* cancel_;
    int16_t laidOutStyle_ = 0;
};

class QVLabelWidget : public QWidget {
    Q_OBJECT
public:
    QVLabelWidget(QVLabel& model, QWidget* parent);
    // The shown runs, one label each.
    QList<QLabel*> Runs() const;

protected:
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;

private:
    void Sync();
    QVLabel& model_;
};

}  // namespace qvrl::qt
