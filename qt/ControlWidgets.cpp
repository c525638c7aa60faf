#include "ControlWidgets.h"

#include <QApplication>
#include <QBoxLayout>
#include <QClipboard>
#include <QKeyEvent>
#include <QMenu>
#include <QMessageBox>
#include <QMouseEvent>
#include <QPixmap>

#include "QtPlatform.h"
#include "controls/Form.h"
#include "support/errors.h"

namespace qvrl::qt {

namespace {

constexpr const char* ControlProperty = "qvrlControl";
constexpr const char* DetachedProperty = "qvrlDetached";

QString Q(const std::string& s) { return QString::fromStdString(s); }

// A Basic caption without its access-key marks ("&&" stands for "&").
QString PlainCaption(const std::string& caption) {
    QString out;
    const QString in = Q(caption);
    for (qsizetype i = 0; i < in.size(); ++i) {
        if (in[i] == '&' && i + 1 < in.size()) ++i;
        else if (in[i] == '&') continue;
        out += in[i];
    }
    return out;
}

// The model's errors end up in a message box, never in Qt's event loop.
// A view whose form is unloaded hands nothing on: its models may be gone.
void Guarded(QWidget* w, const std::function<void()>& f) {
    if (Detached(w)) return;
    try {
        f();
    } catch (const RuntimeError& e) {
        QMessageBox::critical(w ? w->window() : nullptr, QStringLiteral("QVRoofLoad"),
                              QStringLiteral("Error %1: %2").arg(e.number()).arg(Q(e.description())));
    }
}

// Keeps a model subscription for as long as the widget lives.
class Subscriber : public QObject {
public:
    Subscriber(Observers::Subscription s, QObject* parent) : QObject(parent), s_(std::move(s)) {}

private:
    Observers::Subscription s_;
};

void SyncCommon(Control& c, QWidget* w) {
    w->setEnabled(c.Enabled());
    w->setVisible(c.Visible());
    w->setToolTip(Q(c.ToolTipText()));
}

void Tag(Control& c, QWidget* w) {
    w->setObjectName(Q(ControlKey(c.Name(), c.Index())));
    w->setProperty(ControlProperty, QVariant::fromValue(static_cast<void*>(&c)));
}

// Clicks on widgets that have no click signal of their own.
class ClickFilter : public QObject {
public:
    ClickFilter(Clickable& c, QObject* parent) : QObject(parent), c_(c) {}
    bool eventFilter(QObject* o, QEvent* e) override {
        auto* w = qobject_cast<QWidget*>(o);
        if (e->type() == QEvent::MouseButtonRelease && static_cast<QMouseEvent*>(e)->button() == Qt::LeftButton)
            Guarded(w, [&] { c_.PerformClick(); });
        else if (e->type() == QEvent::MouseButtonDblClick)
            Guarded(w, [&] { c_.DblClick(); });
        return false;
    }

private:
    Clickable& c_;
};

QWidget* MakeLabel(Label& m, QWidget* parent) {
    auto* w = new QLabel(parent);
    w->setTextFormat(Qt::PlainText);
    w->installEventFilter(new ClickFilter(m, w));
    Bind(m, w, [&m, w] {
        w->setText(PlainCaption(m.Caption()));
        QFont f = w->font();
        f.setBold(m.FontBold());
        w->setFont(f);
        QPalette p = w->palette();
        p.setColor(QPalette::WindowText, ColourOf(m.ForeColor(), QApplication::palette()));
        w->setPalette(p);
        SyncCommon(m, w);
    });
    return w;
}

QWidget* MakeButton(CommandButton& m, QWidget* parent) {
    auto* w = new QPushButton(parent);
    w->setAutoDefault(false);
    QObject::connect(w, &QPushButton::clicked, w, [&m, w] { Guarded(w, [&] { m.PerformClick(); }); });
    Bind(m, w, [&m, w] {
        w->setText(Q(m.Caption()));
        SyncCommon(m, w);
    });
    return w;
}

QWidget* MakeCheck(CheckBox& m, QWidget* parent) {
    auto* w = new QCheckBox(parent);
    auto sync = [&m, w] {
        w->setText(Q(m.Caption()));
        w->setTristate(m.Value() == 2);
        w->setCheckState(m.Value() == 1 ? Qt::Checked : m.Value() == 2 ? Qt::PartiallyChecked : Qt::Unchecked);
        SyncCommon(m, w);
    };
    // The model decides the state; the box shows what it decided.
    QObject::connect(w, &QCheckBox::clicked, w, [&m, w, sync] {
        Guarded(w, [&] { m.PerformClick(); });
        sync();
    });
    Bind(m, w, sync);
    return w;
}

QWidget* MakeOption(OptionButton& m, QWidget* parent) {
    auto* w = new QRadioButton(parent);
    w->setAutoExclusive(false);  // the model's groups decide
    auto sync = [&m, w] {
        w->setText(Q(m.Caption()));
        w->setChecked(m.Value());
        SyncCommon(m, w);
    };
    QObject::connect(w, &QRadioButton::clicked, w, [&m, w, sync] {
        Guarded(w, [&] { m.PerformClick(); });
        sync();
    });
    Bind(m, w, sync);
    return w;
}

QWidget* MakeCombo(ComboBox& m, QWidget* parent) {
    auto* w = new QComboBox(parent);
    w->setSizeAdjustPolicy(QComboBox::AdjustToContents);
    auto sync = [&m, w] {
        QSignalBlocker block(w);
        bool same = w->count() == m.ListCount();
        for (int32_t i = 0; same && i < m.ListCount(); ++i) same = w->itemText(i) == Q(m.List(i));
        if (!same) {
            w->clear();
            for (const auto& item : m.Items()) w->addItem(Q(item.text));
        }
        w->setCurrentIndex(m.ListIndex());
        SyncCommon(m, w);
    };
    QObject::connect(w, &QComboBox::activated, w, [&m, w, sync](int i) {
        Guarded(w, [&] { m.ListIndex(i); });
        sync();
    });
    Bind(m, w, sync);
    return w;
}

QWidget* MakeList(ListView& m, QWidget* parent) {
    auto* w = new QTreeWidget(parent);
    w->setRootIsDecorated(false);
    w->setSelectionMode(QAbstractItemView::SingleSelection);
    auto sync = [&m, w] {
        QSignalBlocker block(w);
        QStringList headers;
        for (const auto& c : m.Columns) headers << Q(c);
        w->setColumnCount(static_cast<int>(std::max<size_t>(1, m.Columns.size())));
        w->setHeaderLabels(headers);
        w->setHeaderHidden(headers.isEmpty());
        w->clear();
        for (int32_t r = 0; r < m.RowCount(); ++r) {
            QStringList cells;
            for (const auto& c : m.Row(r)) cells << Q(c);
            w->addTopLevelItem(new QTreeWidgetItem(cells));
        }
        if (m.SelectedRow() >= 0) w->setCurrentItem(w->topLevelItem(m.SelectedRow()));
        for (int c = 0; c < w->columnCount(); ++c) w->resizeColumnToContents(c);
        SyncCommon(m, w);
    };
    QObject::connect(w, &QTreeWidget::itemClicked, w, [&m, w](QTreeWidgetItem* item) {
        Guarded(w, [&] { m.SelectedRow(w->indexOfTopLevelItem(item)); });
    });
    QObject::connect(w, &QTreeWidget::itemDoubleClicked, w, [&m, w](QTreeWidgetItem* item) {
        Guarded(w, [&] { m.DblClick(w->indexOfTopLevelItem(item)); });
    });
    Bind(m, w, sync);
    return w;
}

QWidget* MakeImage(Image& m, QWidget* parent) {
    auto* w = new QLabel(parent);
    w->installEventFilter(new ClickFilter(m, w));
    Bind(m, w, [&m, w] {
        w->setPixmap(m.Picture().empty() ? QPixmap() : QPixmap(Q(m.Picture())));
        SyncCommon(m, w);
    });
    return w;
}

// A plain text field: typed characters go through the model's KeyPress.
class TextBoxFilter : public QObject {
public:
    TextBoxFilter(TextBox& m, QLineEdit* w) : QObject(w), m_(m), w_(w) {}
    bool eventFilter(QObject*, QEvent* e) override {
        if (e->type() != QEvent::KeyPress || Detached(w_)) return false;
        auto* k = static_cast<QKeyEvent*>(e);
        if (k->key() == Qt::Key_Backspace || k->key() == Qt::Key_Delete || k->matches(QKeySequence::Paste) ||
            k->matches(QKeySequence::Cut) || k->matches(QKeySequence::Undo)) {
            // Edits that are no typed character reach the model as the new text.
            QLineEdit probe(w_->text());
            probe.setSelection(w_->selectionStart() < 0 ? w_->cursorPosition() : w_->selectionStart(),
                               static_cast<int>(w_->selectedText().size()));
            if (!w_->hasSelectedText()) probe.setCursorPosition(w_->cursorPosition());
            if (k->key() == Qt::Key_Backspace) probe.backspace();
            else if (k->key() == Qt::Key_Delete || k->matches(QKeySequence::Cut)) probe.del();
            else if (k->matches(QKeySequence::Paste)) probe.insert(QApplication::clipboard()->text());
            Guarded(w_, [&] { m_.Text(probe.text().toStdString()); });
            return true;
        }
        const QString t = k->text();
        if (t.isEmpty() || !t[0].isPrint()) return false;
        Guarded(w_, [&] { m_.TypeText(t.toStdString()); });
        return true;
    }

private:
    TextBox& m_;
    QLineEdit* w_;
};

QWidget* MakeTextBox(TextBox& m, QWidget* parent) {
    auto* w = new QLineEdit(parent);
    w->installEventFilter(new TextBoxFilter(m, w));
    Bind(m, w, [&m, w] {
        if (w->text() != Q(m.Text())) w->setText(Q(m.Text()));
        w->setReadOnly(m.Locked());
        if (m.MaxLength > 0) w->setMaxLength(m.MaxLength);
        SyncCommon(m, w);
    });
    return w;
}

QWidget* MakeProgress(ProgressBar& m, QWidget* parent) {
    auto* w = new QProgressBar(parent);
    w->setTextVisible(false);
    w->setMinimumWidth(TwipsToPixels(4000));
    w->setRange(0, 1000);
    Bind(m, w, [&m, w] {
        const double span = static_cast<double>(m.Max()) - m.Min();
        const double share = span > 0 ? (m.Value() - m.Min()) / span : 0.0;
        w->setValue(static_cast<int>(std::lround(std::clamp(share, 0.0, 1.0) * 1000)));
        SyncCommon(m, w);
    });
    return w;
}

QWidget* MakeFrame(QVFrame& m, QWidget* parent) {
    auto* w = new QGroupBox(parent);
    Bind(m, w, [&m, w] {
        w->setTitle(Q(m.DrawnCaption()));
        SyncCommon(m, w);
    });
    return w;
}

}  // namespace

QColor ColourOf(uint32_t ole, const QPalette& p) {
    if (ole & 0x80000000u) {
        switch (ole & 0xFF) {
        case 5: return p.color(QPalette::Base);
        case 8: return p.color(QPalette::Text);
        case 0xF: return p.color(QPalette::Button);
        case 0x12: return p.color(QPalette::ButtonText);
        default: return p.color(QPalette::WindowText);
        }
    }
    return QColor(static_cast<int>(ole & 0xFF), static_cast<int>((ole >> 8) & 0xFF), static_cast<int>((ole >> 16) & 0xFF));
}

void Bind(Control& control, QWidget* widget, std::function<void()> sync) {
    Tag(control, widget);
    Follow(control, widget, std::move(sync));
}

void Follow(Control& control, QWidget* widget, std::function<void()> sync) {
    sync();
    new Subscriber(control.Observe(std::move(sync)), widget);
}

bool Detached(const QWidget* widget) {
    const QWidget* top = widget ? widget->window() : nullptr;
    return top && top->property(DetachedProperty).toBool();
}

Control* ControlOf(const QWidget* widget) {
    for (const QWidget* w = widget; w; w = w->parentWidget()) {
        const QVariant v = w->property(ControlProperty);
        if (v.isValid()) return static_cast<Control*>(v.value<void*>());
    }
    return nullptr;
}

QWidget* MakeControlWidget(Control& c, QWidget* parent) {
    switch (c.Kind()) {
    case ControlKind::Label: return MakeLabel(static_cast<Label&>(c), parent);
    case ControlKind::CommandButton: return MakeButton(static_cast<CommandButton&>(c), parent);
    case ControlKind::CheckBox: return MakeCheck(static_cast<CheckBox&>(c), parent);
    case ControlKind::OptionButton: return MakeOption(static_cast<OptionButton&>(c), parent);
    case ControlKind::ComboBox: return MakeCombo(static_cast<ComboBox&>(c), parent);
    case ControlKind::ListView: return MakeList(static_cast<ListView&>(c), parent);
    case ControlKind::Image: return MakeImage(static_cast<Image&>(c), parent);
    case ControlKind::TextBox: return MakeTextBox(static_cast<TextBox&>(c), parent);
    case ControlKind::ProgressBar: return MakeProgress(static_cast<ProgressBar&>(c), parent);
    case ControlKind::QVTextBox: return new QVTextBoxWidget(static_cast<QVTextBox&>(c), parent);
    case ControlKind::QVButtons: return new QVButtonsWidget(static_cast<QVButtons&>(c), parent);
    case ControlKind::QVLabel: return new QVLabelWidget(static_cast<QVLabel&>(c), parent);
    case ControlKind::QVFrame: return MakeFrame(static_cast<QVFrame&>(c), parent);
    }
    return new QWidget(parent);
}

// --- QVTextBox ---------------------------------------------------------------

QVTextBoxWidget::QVTextBoxWidget(QVTextBox& model, QWidget* parent)
    : QWidget(parent),
      model_(model),
      remark_(new QLabel(this)),
      caption_(new QLabel(this)),
      equals_(new QLabel(QStringLiteral("="), this)),
      edit_(new QLineEdit(this)),
      value_(new QLabel(this)),
      dimension_(new QLabel(this)) {
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(TwipsToPixels(60));
    for (QLabel* l : {remark_, caption_, equals_, dimension_}) l->setTextFormat(Qt::PlainText);
    row->addWidget(remark_);
    row->addWidget(caption_);
    row->addWidget(equals_);
    row->addWidget(edit_);
    row->addWidget(value_);
    row->addWidget(dimension_);
    row->addStretch(1);
    edit_->installEventFilter(this);
    edit_->setContextMenuPolicy(Qt::CustomContextMenu);
    setFocusProxy(edit_);
    connect(edit_, &QLineEdit::selectionChanged, this, [this] { SelectionToModel(); });
    connect(edit_, &QLineEdit::cursorPositionChanged, this, [this] { SelectionToModel(); });
    connect(edit_, &QWidget::customContextMenuRequested, this, [this](const QPoint& at) {
        const auto entries = model_.ContextMenu();
        if (entries.empty()) return;
        QMenu menu;
        for (const auto& e : entries) {
            QAction* a = menu.addAction(Q(e.caption));
            a->setCheckable(true);
            a->setChecked(e.checked);
            a->setData(Q(e.name));
        }
        if (QAction* chosen = menu.exec(edit_->mapToGlobal(at)))
            Guarded(this, [&] { model_.ChooseMenu(chosen->data().toString().toStdString()); });
    });
    Bind(model_, this, [this] { Sync(); });
}

QVTextBoxWidget::~QVTextBoxWidget() {
    edit_->removeEventFilter(this);
    disconnect(edit_, nullptr, this, nullptr);
}

void QVTextBoxWidget::Sync() {
    syncing_ = true;
    const auto width = [](QLabel* l, bool autosize, int16_t twips) {
        // The designed width keeps the columns of a form in line; a text our
        // font sets wider than the designer's widens its label, uncut.
        l->setMinimumWidth(autosize ? 0 : TwipsToPixels(twips));
        l->setMaximumWidth(QWIDGETSIZE_MAX);
    };
    remark_->setText(Q(model_.Remark()));
    remark_->setVisible(model_.VisibleRemark());
    width(remark_, model_.AutosizeRemark(), model_.WidthRemark());
    caption_->setText(Q(model_.Caption()));
    caption_->setVisible(model_.VisibleCaption());
    width(caption_, model_.AutosizeCaption(), model_.WidthCaption());
    equals_->setVisible(model_.VisibleEq());

    const int editWidth = TwipsToPixels(model_.EditWidth());
    const Qt::Alignment align = model_.Alignment == 1 ? Qt::AlignRight : model_.Alignment == 2 ? Qt::AlignHCenter : Qt::AlignLeft;
    edit_->setFixedWidth(editWidth);
    edit_->setAlignment(align | Qt::AlignVCenter);
    value_->setFixedWidth(editWidth);
    value_->setAlignment(align | Qt::AlignVCenter);
    edit_->setVisible(!model_.LabelLike());
    value_->setVisible(model_.LabelLike());
    const QString text = Q(model_.EditText());
    value_->setText(text);
    if (edit_->text() != text) edit_->setText(text);
    edit_->setReadOnly(model_.Locked());
    if (edit_->hasFocus()) {
        if (model_.SelLength() > 0) edit_->setSelection(model_.SelStart(), model_.SelLength());
        else edit_->setCursorPosition(model_.SelStart());
    }
    QPalette p = edit_->palette();
    p.setColor(QPalette::Base, ColourOf(model_.BackColor(), QApplication::palette()));
    p.setColor(QPalette::Text, ColourOf(model_.ForeColor(), QApplication::palette()));
    edit_->setPalette(p);

    dimension_->setText(Q(model_.DimensionShown()));
    dimension_->setVisible(model_.VisibleDimension());
    QFont f = dimension_->font();
    f.setBold(model_.DimensionBold());
    dimension_->setFont(f);
    QPalette dp = dimension_->palette();
    dp.setColor(QPalette::WindowText, ColourOf(model_.DimensionColour(), QApplication::palette()));
    dimension_->setPalette(dp);
    SyncCommon(model_, this);
    syncing_ = false;
}

void QVTextBoxWidget::SelectionToModel() {
    if (syncing_ || Detached(this)) return;
    const int start = edit_->hasSelectedText() ? edit_->selectionStart() : edit_->cursorPosition();
    const int length = edit_->hasSelectedText() ? static_cast<int>(edit_->selectedText().size()) : 0;
    if (start == model_.SelStart() && length == model_.SelLength()) return;
    syncing_ = true;
    model_.Select(start, length);
    syncing_ = false;
}

void QVTextBoxWidget::Type(const std::string& utf8) {
    SelectionToModel();
    Guarded(this, [&] { model_.TypeText(utf8); });
}

bool QVTextBoxWidget::eventFilter(QObject* watched, QEvent* event) {
    if (watched != edit_ || event->type() != QEvent::KeyPress || Detached(this))
        return QWidget::eventFilter(watched, event);
    auto* k = static_cast<QKeyEvent*>(event);
    Form* form = model_.Parent();
    switch (k->key()) {
    case Qt::Key_Tab:
    case Qt::Key_Backtab: return false;  // the view's focus hand-over validates
    case Qt::Key_Return:
    case Qt::Key_Enter:
        SelectionToModel();
        Guarded(this, [&] {
            if (form) form->PressKey(key::Return);
            else model_.SendKey(key::Return);
        });
        return true;
    case Qt::Key_Up:
    case Qt::Key_Down:
        SelectionToModel();
        Guarded(this, [&] { model_.SendKey(k->key() == Qt::Key_Up ? key::Up : key::Down); });
        return true;
    case Qt::Key_Backspace: Type(std::string(1, static_cast<char>(key::Back))); return true;
    case Qt::Key_Delete:
        // No typed character: the edit's text changes as code would change it.
        SelectionToModel();
        Guarded(this, [&] {
            QString t = edit_->text();
            const int start = model_.SelStart();
            const int length = model_.SelLength() > 0 ? model_.SelLength() : 1;
            if (start >= t.size()) return;
            t.remove(start, length);
            model_.EditText(t.toStdString());
            model_.Select(start, 0);
        });
        return true;
    default: break;
    }
    if (k->matches(QKeySequence::Paste)) {
        Type(QApplication::clipboard()->text().toStdString());
        return true;
    }
    if (k->matches(QKeySequence::Cut) || k->matches(QKeySequence::Undo) || k->matches(QKeySequence::Redo))
        return true;  // the model keeps no history; cut would bypass the key rules
    const QString t = k->text();
    if (!t.isEmpty() && t[0].isPrint()) {
        Type(t.toStdString());
        return true;
    }
    return false;  // cursor movement and selection stay the edit's own
}

// --- QVButtons ---------------------------------------------------------------

QVButtonsWidget::QVButtonsWidget(QVButtons& model, QWidget* parent)
    : QWidget(parent), model_(model), ok_(new QPushButton(this)), cancel_(new QPushButton(this)) {
    auto* box = new QBoxLayout(QBoxLayout::LeftToRight, this);
    box->setContentsMargins(0, 0, 0, 0);
    box->addWidget(ok_);
    box->addWidget(cancel_);
    for (QPushButton* b : {ok_, cancel_}) b->setAutoDefault(false);
    ok_->setObjectName(QStringLiteral("cmdOk"));
    cancel_->setObjectName(QStringLiteral("cmdCancel"));
    connect(ok_, &QPushButton::clicked, this, [this] { Guarded(this, [&] { model_.Buttons(0).PerformClick(); }); });
    connect(cancel_, &QPushButton::clicked, this,
            [this] { Guarded(this, [&] { model_.Buttons(1).PerformClick(); }); });
    Bind(model_, this, [this] { Sync(); });
    Follow(model_.cmdOk(), ok_, [this] { Sync(); });
    Follow(model_.cmdCancel(), cancel_, [this] { Sync(); });
}

void QVButtonsWidget::Sync() {
    ok_->setText(Q(model_.cmdOk().Caption()));
    cancel_->setText(Q(model_.cmdCancel().Caption()));
    ok_->setEnabled(model_.cmdOk().Enabled());
    cancel_->setEnabled(model_.cmdCancel().Enabled());
    if (laidOutStyle_ != model_.Style()) {
        laidOutStyle_ = model_.Style();
        auto* box = static_cast<QBoxLayout*>(layout());
        const bool stacked = model_.Style() == 2;
        box->setDirection(stacked ? QBoxLayout::TopToBottom : QBoxLayout::LeftToRight);
        box->setSpacing(stacked ? TwipsToPixels(QVButtons::StackGap) : TwipsToPixels(90));
        setFixedSize(TwipsToPixels(model_.StripWidth()), TwipsToPixels(model_.StripHeight()));
    }
    SyncCommon(model_, this);
}

// --- QVLabel -----------------------------------------------------------------

QVLabelWidget::QVLabelWidget(QVLabel& model, QWidget* parent) : QWidget(parent), model_(model) {
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(0);
    Bind(model_, this, [this] { Sync(); });
}

QList<QLabel*> QVLabelWidget::Runs() const { return findChildren<QLabel*>(QString(), Qt::FindDirectChildrenOnly); }

void QVLabelWidget::Sync() {
    auto* row = static_cast<QHBoxLayout*>(layout());
    while (QLayoutItem* item = row->takeAt(0)) {
        delete item->widget();
        delete item;
    }
    if (model_.Alignment == 1 || model_.Alignment == 2) row->addStretch(1);
    for (const LabelRun& run : model_.Runs()) {
        // No symbol font here: the Greek letter of the key stands for it.
        auto* l = new QLabel(Q(run.symbol ? run.shown : run.text), this);
        l->setTextFormat(Qt::PlainText);
        l->setObjectName(run.symbol ? QStringLiteral("symbol") : QStringLiteral("text"));
        QPalette p = l->palette();
        p.setColor(QPalette::WindowText, ColourOf(model_.ForeColor(), QApplication::palette()));
        l->setPalette(p);
        row->addWidget(l);
    }
    if (model_.Alignment != 1) row->addStretch(1);
    SyncCommon(model_, this);
}

void QVLabelWidget::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton) Guarded(this, [&] { model_.PerformClick(); });
}

void QVLabelWidget::mouseDoubleClickEvent(QMouseEvent*) { Guarded(this, [&] { model_.DblClick(); }); }

}  // namespace qvrl::qt
