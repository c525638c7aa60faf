// The views of the town selection dialogs: the generic form view with the
// municipality list shown by a table over the list model, which stays quick
// with ten thousand rows, and the level labels beside their combos.

#include <QAbstractTableModel>
#include <QFormLayout>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QMessageBox>
#include <QTableView>

#include "ControlWidgets.h"
#include "FormView.h"
#include "QtPlatform.h"
#include "support/errors.h"

namespace qvrl::qt {

namespace {

QString Q(const std::string& s) { return QString::fromStdString(s); }

class TownListModel : public QAbstractTableModel {
public:
    TownListModel(ListView& m, QObject* parent) : QAbstractTableModel(parent), m_(m) {}
    int rowCount(const QModelIndex& parent) const override { return parent.isValid() ? 0 : rows_; }
    int columnCount(const QModelIndex& parent) const override { return parent.isValid() ? 0 : cols_; }
    QVariant data(const QModelIndex& i, int role) const override {
        if (role != Qt::DisplayRole || !i.isValid() || i.row() >= m_.RowCount()) return {};
        const auto& cells = m_.Row(i.row());
        return static_cast<size_t>(i.column()) < cells.size() ? Q(cells[static_cast<size_t>(i.column())]) : QString();
    }
    QVariant headerData(int section, Qt::Orientation o, int role) const override {
        if (o != Qt::Horizontal || role != Qt::DisplayRole || section >= cols_) return {};
        return Q(m_.Columns[static_cast<size_t>(section)]);
    }
    // Whether the rows or columns changed shape: the view then starts over.
    bool Refresh() {
        const int rows = m_.RowCount(), cols = static_cast<int>(m_.Columns.size());
        if (rows != rows_ || cols != cols_ || headers_ != m_.Columns) {
            beginResetModel();
            rows_ = rows;
            cols_ = cols;
            headers_ = m_.Columns;
            endResetModel();
            return true;
        }
        if (rows_ > 0 && cols_ > 0) emit dataChanged(index(0, 0), index(rows_ - 1, cols_ - 1));
        return false;
    }

private:
    ListView& m_;
    int rows_ = 0;
    int cols_ = 0;
    std::vector<std::string> headers_;
};

QTableView* MakeTownList(ListView& m, QWidget* parent) {
    auto* view = new QTableView(parent);
    auto* model = new TownListModel(m, view);
    view->setModel(model);
    view->setSelectionBehavior(QAbstractItemView::SelectRows);
    view->setSelectionMode(QAbstractItemView::SingleSelection);
    view->setEditTriggers(QAbstractItemView::NoEditTriggers);
    view->verticalHeader()->hide();
    view->verticalHeader()->setDefaultSectionSize(view->fontMetrics().height() + 4);
    view->horizontalHeader()->setStretchLastSection(true);
    view->setMinimumSize(TwipsToPixels(12000), TwipsToPixels(4000));
    Bind(m, view, [&m, view, model] {
        view->setEnabled(m.Enabled());
        view->setToolTip(Q(m.ToolTipText()));
        // The form hides the list while it fills it: nothing to show until then.
        view->setVisible(m.Visible());
        if (!m.Visible()) return;
        QSignalBlocker block(view->selectionModel());
        if (model->Refresh()) view->resizeColumnsToContents();
        if (m.SelectedRow() >= 0 && m.SelectedRow() < model->rowCount({})) {
            view->selectRow(m.SelectedRow());
            view->scrollTo(model->index(m.SelectedRow(), 0));
        } else {
            view->clearSelection();
        }
    });
    QObject::connect(view, &QTableView::clicked, view, [&m, view](const QModelIndex& i) {
        if (Detached(view) || !i.isValid()) return;
        try {
            if (i.row() == m.SelectedRow()) m.ItemClick(i.row());
            else m.SelectedRow(i.row());
        } catch (const RuntimeError& e) {
            QMessageBox::critical(view->window(), QStringLiteral("QVRoofLoad"), Q(e.description()));
        }
    });
    return view;
}

// Puts a label that stands on a row of its own beside the field of another row.
void LabelBeside(FormView& v, const char* label, const char* field) {
    QWidget* l = v.WidgetOf(label);
    QWidget* f = v.WidgetOf(field);
    if (!l || !f) return;
    for (auto* form : v.findChildren<QFormLayout*>()) {
        int row = -1;
        QFormLayout::ItemRole role;
        form->getWidgetPosition(f, &row, &role);
        if (row < 0) continue;
        for (auto* other : v.findChildren<QFormLayout*>()) {
            int lr = -1;
            QFormLayout::ItemRole lrole;
            other->getWidgetPosition(l, &lr, &lrole);
            if (lr >= 0) {
                const auto taken = other->takeRow(lr);
                delete taken.labelItem;  // the items only; the widgets stay
                delete taken.fieldItem;
                break;
            }
        }
        form->getWidgetPosition(f, &row, &role);
        const auto taken = form->takeRow(row);
        delete taken.labelItem;
        delete taken.fieldItem;
        form->insertRow(row, l, f);
        return;
    }
}

std::unique_ptr<QDialog> MakeSelTownView(FormBase& fb) {
    auto& form = dynamic_cast<Form&>(fb);
    auto view = std::make_unique<FormView>(form);
    if (QWidget* old = view->WidgetOf("lvGem")) {
        QTableView* table = MakeTownList(form.Get<ListView>("lvGem"), view.get());
        delete view->layout()->replaceWidget(old, table, Qt::FindChildrenRecursively);
        delete old;
    }
    LabelBeside(*view, "lbSelTown(2)", "cbBL");
    LabelBeside(*view, "lbSelTown(1)", "cbBez");
    LabelBeside(*view, "lbSelTown(0)", "cbLK");
    view->resize(TwipsToPixels(15000), TwipsToPixels(9000));
    return view;
}

const bool registered = [] {
    RegisterView("frmSelTown", MakeSelTownView);
    RegisterView("frmSelTown_1", MakeSelTownView);
    return true;
}();

}  // namespace

}  // namespace qvrl::qt
