// The views of the live load catalogue grids: the generic form view with
// gridSel shown as a table whose heading rows stand out and cannot be
// chosen, and whose long texts wrap onto the lines the model gives a row.

#include <QFont>
#include <QHeaderView>
#include <QLayout>
#include <QMessageBox>
#include <QTableWidget>

#include "ControlWidgets.h"
#include "FormView.h"
#include "QtPlatform.h"
#include "controls/QVGridX.h"
#include "dialogs/frmLiveLoadSelect_1.h"
#include "support/errors.h"

namespace qvrl::qt {

namespace {

QString Q(const std::string& s) { return QString::fromStdString(s); }

void FillGrid(QVGridX& m, QTableWidget* w) {
    QSignalBlocker block(w);
    w->clear();
    w->clearSpans();
    w->setColumnCount(static_cast<int>(m.Columns.size()));
    QStringList headers;
    for (const auto& c : m.Columns) headers << Q(c);
    w->setHorizontalHeaderLabels(headers);
    w->setRowCount(m.RowCount());
    const QColor grey = w->palette().color(QPalette::Disabled, QPalette::Text);
    const QColor highlight = w->palette().color(QPalette::AlternateBase);
    const int line = w->fontMetrics().height() + 4;
    for (int32_t r = 0; r < m.RowCount(); ++r) {
        const int32_t flags = m.RowFlags(r);
        const auto& cells = m.Row(r);
        for (int c = 0; c < w->columnCount(); ++c) {
            auto* item = new QTableWidgetItem(static_cast<size_t>(c) < cells.size() ? Q(cells[static_cast<size_t>(c)])
                                                                                   : QString());
            if (!m.RowSelectable(r)) {
                item->setFlags(Qt::NoItemFlags);
                item->setForeground(grey);
            } else {
                item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable);
            }
            if (flags & gridflag::KatHighlight) {
                QFont bold = item->font();
                bold.setBold(true);
                item->setFont(bold);
                item->setBackground(highlight);
            }
            w->setItem(r, c, item);
        }
        // A heading's text runs across the row.
        if (flags & gridflag::KatHighlight) w->setSpan(r, 0, 1, w->columnCount());
        const int32_t height = m.RowHeight(r);
        w->setRowHeight(r, height > 0 ? line * (height / QVGridX::LineHeight) : line);
    }
    w->resizeColumnsToContents();
    // Long texts wrap at the model's line width instead of pushing the load
    // out of sight.
    const int widest = TwipsToPixels(QVGridX::LineWidth);
    for (int c = 0; c < w->columnCount(); ++c)
        if (w->columnWidth(c) > widest) w->setColumnWidth(c, widest);
    w->horizontalHeader()->setStretchLastSection(false);
    // The load stands beside the row number, where no width of the texts can
    // push it out of sight.
    QHeaderView* header = w->horizontalHeader();
    header->moveSection(header->visualIndex(LiveLoadSelectForm::ColWert), LiveLoadSelectForm::ColZeile + 1);
}

// What the table shows of the grid, its selection aside.
std::string Signature(const QVGridX& m) {
    std::string sig;
    for (const auto& c : m.Columns) sig += c + '\x1f';
    for (int32_t r = 0; r < m.RowCount(); ++r) {
        sig += std::to_string(m.RowFlags(r)) + ',' + std::to_string(m.RowHeight(r)) + '\x1e';
        for (const auto& c : m.Row(r)) sig += c + '\x1f';
    }
    return sig;
}

QTableWidget* MakeGrid(QVGridX& m, QWidget* parent) {
    auto* w = new QTableWidget(parent);
    w->setSelectionBehavior(QAbstractItemView::SelectRows);
    w->setSelectionMode(QAbstractItemView::SingleSelection);
    w->setEditTriggers(QAbstractItemView::NoEditTriggers);
    w->setWordWrap(true);
    w->verticalHeader()->hide();
    w->setMinimumSize(TwipsToPixels(9000), TwipsToPixels(4500));
    auto shown = std::make_shared<std::string>();
    Bind(m, w, [&m, w, shown] {
        w->setEnabled(m.Enabled());
        w->setVisible(m.Visible());
        // A new selection only moves the cursor; anything else fills anew.
        const std::string now = Signature(m);
        if (now != *shown) {
            *shown = now;
            FillGrid(m, w);
        }
        QSignalBlocker block(w);
        if (m.SelectedRow() >= 0 && m.SelectedRow() < w->rowCount()) {
            w->selectRow(m.SelectedRow());
            w->scrollToItem(w->item(m.SelectedRow(), 0));
        } else {
            w->clearSelection();
        }
    });
    const auto guarded = [w](const std::function<void()>& f) {
        if (Detached(w)) return;
        try {
            f();
        } catch (const RuntimeError& e) {
            QMessageBox::critical(w->window(), QStringLiteral("QVRoofLoad"), Q(e.description()));
        }
    };
    QObject::connect(w, &QTableWidget::cellClicked, w, [&m, w, guarded](int row, int) {
        guarded([&] { m.SelectedRow(row); });
        // A heading refused: the cursor goes back to the row the model keeps.
        if (m.SelectedRow() != row && m.SelectedRow() >= 0) w->selectRow(m.SelectedRow());
    });
    QObject::connect(w, &QTableWidget::cellDoubleClicked, w,
                     [&m, guarded](int row, int) { guarded([&] { m.DblClick(row); }); });
    return w;
}

std::unique_ptr<QDialog> MakeLiveLoadSelectView(FormBase& fb) {
    auto& form = dynamic_cast<Form&>(fb);
    auto view = std::make_unique<FormView>(form);
    if (QWidget* old = view->WidgetOf("gridSel")) {
        QTableWidget* grid = MakeGrid(form.Get<QVGridX>("gridSel"), view.get());
        delete view->layout()->replaceWidget(old, grid, Qt::FindChildrenRecursively);
        delete old;
    }
    view->resize(TwipsToPixels(12600), TwipsToPixels(7000));
    return view;
}

const bool registered = [] {
    RegisterView("frmLiveLoadSelect_1", MakeLiveLoadSelectView);
    RegisterView("frmLiveLoadSelectAdd_1", MakeLiveLoadSelectView);
    return true;
}();

}  // namespace

}  // namespace qvrl::qt
