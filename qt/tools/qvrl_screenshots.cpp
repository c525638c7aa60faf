// Renders every form there is to PNG, offscreen, in the languages given:
//   qvrl_screenshots OUTDIR [deu|eng]...
// Each form is shown through the Qt platform as a host would show it, so
// the picture is what a user sees. Files: OUTDIR/<form>_<lang>.png.

#include <QApplication>
#include <QDialog>
#include <QDir>
#include <QPixmap>
#include <cstdio>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "QtInstall.h"
#include "QtPlatform.h"
#include "controls/Form.h"
#include "controls/QVButtons.h"
#include "controls/QVLabel.h"
#include "controls/QVTextBox.h"
#include "controls/frmWartenProgress.h"
#include "dialogs/frmLiveLoadSelect_1.h"
#include "dialogs/frmLiveLoad_1.h"
#include "dialogs/frmRoofLoad.h"
#include "dialogs/frmRoofLoad100.h"
#include "dialogs/frmRoofLoadEN.h"
#include "maps/MapForms.h"
#include "location/frmEditAGSDB.h"
#include "location/frmSLZ_Ort.h"
#include "location/frmSelTown.h"
#include "location/frmSelTown_1.h"
#include "location/frmWLZ_Ort.h"
#include "support/CLocLite.h"
#include "support/ModuleState.h"
#include "support/modLowLevel.h"

namespace {

using namespace qvrl;

std::string T(int32_t number) { return LoadResStr(Variant(number)); }

// Every kind of control once, the text box in each schema and state, so
// that a change of any widget shows in one picture.
class frmControlGallery : public Form {
public:
    frmControlGallery()
        : values(Add<QVFrame>("fraValues")),
          snow(Add<QVTextBox>("txtValue", 0)),
          height(Add<QVTextBox>("txtValue", 1)),
          bare(Add<QVTextBox>("txtValue", 2)),
          automatic(Add<QVTextBox>("txtValue", 3)),
          symbol(Add<QVLabel>("lblSymbol")),
          choices(Add<QVFrame>("fraChoices")),
          lblZone(Add<Label>("lblZone")),
          cbZone(Add<ComboBox>("cbZone")),
          lblTown(Add<Label>("lblTown")),
          txtTown(Add<TextBox>("txtTown")),
          chk(Add<CheckBox>("chkCe")),
          opt0(Add<OptionButton>("optForm", 0)),
          opt1(Add<OptionButton>("optForm", 1)),
          cmd(Add<CommandButton>("cmdTown")),
          lv(Add<ListView>("lvZones")),
          bar(Add<ProgressBar>("pbLoad")),
          strip2(Add<QVButtons>("QVButtons2")),
          strip1(Add<QVButtons>("QVButtons1")) {
        strip2.UserMode = false;
        strip2.Style(2);
        strip2.UserMode = true;
    }
    std::string FormName() const override { return "frmControlGallery"; }

    void Localize() override {
        Caption("frmControlGallery");
        values.Caption("&" + T(9508));
        snow.Schema(2);
        snow.Remark(T(9509) + " 2");
        snow.Caption("s_k");
        snow.Dimension("kN/m²");
        snow.Text(Variant(0.85));
        height.Schema(3);
        height.Style(QVTextBox::StyleWhole);
        height.Caption("h");
        height.Dimension("m");
        height.Text(Variant(int32_t{12}));
        bare.Schema(4);
        bare.Text(Variant(1.25));
        automatic.Schema(3);
        automatic.Caption("q_b");
        automatic.Dimension("kN/m²");
        automatic.AutoUpdateEnabled = true;
        automatic.Text(Variant(0.32));
        automatic.AutoUpdateWarning(true);
        symbol.Caption(T(9507) + " \\ga = 30°, \\gm_1 = 0,8");
        choices.Caption(T(9518));
        lblZone.Caption(T(9519));
        cbZone.Clear();
        for (int32_t z = 1; z <= 4; ++z) cbZone.AddItem(T(9519) + " " + std::to_string(z), z);
        cbZone.ListIndex(1);
        lblTown.Caption(T(9503));
        txtTown.Text("Garmisch-Partenkirchen");
        chk.Caption(T(9514));
        chk.Value(1);
        opt0.Caption(T(9531));
        opt1.Caption(T(9534));
        opt0.Value(true);
        cmd.Caption(T(9503) + " ...");
        lv.Columns = {T(9520), "q_p [kN/m²]"};
        lv.Clear();
        lv.AddRow({T(534), "0,65"});
        lv.AddRow({T(535), "0,56"});
        lv.SelectedRow(1);
        bar.Value(40);
        strip1.Localize();
        strip2.Localize();
    }

private:
    QVFrame& values;
    QVTextBox &snow, &height, &bare, &automatic;
    QVLabel& symbol;
    QVFrame& choices;
    Label& lblZone;
    ComboBox& cbZone;
    Label& lblTown;
    TextBox& txtTown;
    CheckBox& chk;
    OptionButton &opt0, &opt1;
    CommandButton& cmd;
    ListView& lv;
    ProgressBar& bar;
    QVButtons &strip2, &strip1;
};

bool Render(Form& form, const QString& file) {
    form.ShowModeless();
    auto& platform = dynamic_cast<qt::QtPlatform&>(CurrentPlatform());
    QWidget* view = platform.DialogOf(form);
    if (!view) return false;
    view->adjustSize();
    QApplication::processEvents();
    const bool ok = view->grab().save(file, "PNG");
    form.Unload();
    QApplication::processEvents();
    return ok;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 2) {
        std::fprintf(stderr, "usage: qvrl_screenshots OUTDIR [deu|eng]...\n");
        return 2;
    }
    QApplication app(argc, argv);
    std::string why;
    if (!qt::InstallQtPlatform(why)) {
        std::fprintf(stderr, "qvrl_screenshots: %s\n", why.c_str());
        return 1;
    }
    const QString out = QString::fromLocal8Bit(argv[1]);
    if (!QDir().mkpath(out)) {
        std::fprintf(stderr, "qvrl_screenshots: cannot make the folder %s\n", argv[1]);
        return 1;
    }
    std::vector<std::string> languages;
    for (int i = 2; i < argc; ++i) languages.emplace_back(argv[i]);
    if (languages.empty()) languages = {"deu", "eng"};

    int failed = 0;
    for (const std::string& lang : languages) {
        if (lang != "deu" && lang != "eng") {
            std::fprintf(stderr, "qvrl_screenshots: unknown language %s (deu or eng)\n", lang.c_str());
            return 2;
        }
        // As the command line's --lang chooses it.
        InitLanguageObjects();
        State().locActive->FileName(ProgramFolder() + "/" + lang + "/" + ProgramName() + "_" + lang + ".scr");
        const auto shoot = [&](Form& form) {
            const QString file = out + "/" + QString::fromStdString(form.FormName() + "_" + lang) + ".png";
            if (Render(form, file)) std::printf("%s\n", file.toLocal8Bit().constData());
            else {
                std::fprintf(stderr, "qvrl_screenshots: cannot write %s\n", file.toLocal8Bit().constData());
                ++failed;
            }
        };
        {
            frmWartenProgress progress;
            progress.Load();
            progress.DetailProgressInfo = true;
            progress.MaxValueMain(120);
            progress.ValueMain(45);
            progress.MaxValueSub(3000);
            progress.ValueSub(2250);
            progress.Info2Text("slzwlz: 2250 / 3000");
            shoot(progress);
        }
        {
            frmControlGallery gallery;
            shoot(gallery);
        }
        // The Eurocode roof load dialog in the states whose boxes differ:
        // no annex, Austria (no vb, no factors), UK (distances by category).
        for (const int16_t norm : {int16_t{54}, int16_t{51}, int16_t{53}}) {
            State().SelectableCodesCtrl = "_1_3_54_50_51_53_52_";
            frmRoofLoadEN roof;
            roof.Load();
            roof.Norm(norm);
            roof.MitNormSelect = true;
            roof.MitG = true;
            roof.NachNorm = true;
            roof.Hoehe_Geb = 12;
            roof.Hoehe_NN = 420;
            roof.GebKat = 3;
            roof.qb0 = 0.39;
            roof.vb0 = 25;
            roof.SLZ = norm == 54 ? 2 : 102;
            roof.Rechenwert_g0 = 0.55;
            roof.Localize();
            roof.Init_Me();
            roof.UpdateData(false, "");
            const QString file =
                out + "/" + QString::fromStdString(roof.FormName() + "_" + std::to_string(norm) + "_" + lang) + ".png";
            if (Render(roof, file)) std::printf("%s\n", file.toLocal8Bit().constData());
            else {
                std::fprintf(stderr, "qvrl_screenshots: cannot write %s\n", file.toLocal8Bit().constData());
                ++failed;
            }
        }
        // The live load dialog with a basic and an additional load, and the
        // grids of Norm 3 with their category headings.
        {
            State().SelectableCodesCtrl = "_1_3_54_";
            frmLiveLoad_1 live;
            live.Load();
            live.Norm = 3;
            live.MitNormSelect = true;
            live.MitG = true;
            live.Grundwert_p = 1.5;
            live.Zuschlag_p = 0.8;
            live.Rechenwert_p = 2.3;
            live.Rechenwert_g0 = 0.55;
            live.Localize();
            live.Init_Me();
            live.UpdateData(false, "");
            shoot(live);
            frmLiveLoadSelect_1 basic;
            basic.Load();
            basic.Norm = 3;
            basic.Init_Me();
            shoot(basic);
            frmLiveLoadSelectAdd_1 add;
            add.Load();
            add.Norm = 3;
            add.Init_Me();
            shoot(add);
        }
        // The dialog of DIN 1055-4:1986 / 5:1975: zone I with its height
        // footnote, and zone III (no footnote) with the dead loads in use.
        for (const bool deadLoads : {false, true}) {
            State().SelectableCodesCtrl = "_1_3_54_";
            frmRoofLoad roof;
            roof.Load();
            roof.Norm(1);
            roof.MitNormSelect = true;
            roof.NachNorm = true;
            roof.MitG = deadLoads;
            roof.MitVorschlag = true;
            roof.Hoehe_Geb = 12;
            roof.SLZ = deadLoads ? 3 : 1;
            roof.Hoehe_NN = 420;
            roof.Rechenwert_g0 = 0.55;
            roof.Rechenwert_g1 = 0.35;
            roof.Localize();
            roof.Init_Me();
            roof.UpdateData(false, "");
            const QString file = out + "/" + QString::fromStdString(roof.FormName() + (deadLoads ? "_MitG_" : "_") + lang) +
                                 ".png";
            if (Render(roof, file)) std::printf("%s\n", file.toLocal8Bit().constData());
            else {
                std::fprintf(stderr, "qvrl_screenshots: cannot write %s\n", file.toLocal8Bit().constData());
                ++failed;
            }
        }
        // The DIN 1055-100 dialog: Norm 3 within its limits, Norm 31 with the
        // five zones and a terrain height above the snow limit (red note).
        for (const int16_t norm : {int16_t{3}, int16_t{31}}) {
            State().SelectableCodesCtrl = "_1_3_31_54_";
            frmRoofLoad100 roof;
            roof.Load();
            roof.Norm = norm;
            roof.MitNormSelect = true;
            roof.MitG = true;
            roof.NachNorm = true;
            roof.Hoehe_Geb = 12;
            roof.Hoehe_NN = norm == 3 ? 420 : 850;
            roof.WZ = norm == 3 ? 2 : 5;
            roof.GebKat = 2;
            roof.SLZ = 1;
            roof.Rechenwert_g0 = 0.55;
            roof.Localize();
            roof.Init_Me();
            roof.UpdateData(false, "");
            const QString file =
                out + "/" + QString::fromStdString(roof.FormName() + "_" + std::to_string(norm) + "_" + lang) + ".png";
            if (Render(roof, file)) std::printf("%s\n", file.toLocal8Bit().constData());
            else {
                std::fprintf(stderr, "qvrl_screenshots: cannot write %s\n", file.toLocal8Bit().constData());
                ++failed;
            }
        }
        // Zone maps and choosers, each with a value chosen as a user would see it.
        {
            const auto chooser = [&](Form& form, const std::function<void()>& set) {
                form.Load();
                set();
                form.UpdateData(false, "");
                form.Localize();
                shoot(form);
            };
            const auto zoneMap = [&](ZoneMapForm& f, int16_t value) {
                chooser(f, [&] { f.Value(value); });
            };
            {
                frmSLZ f;
                zoneMap(f, 2);
            }
            {
                frmSLZ_1 f;
                zoneMap(f, 11);
            }
            {
                frmWZ_1 f;
                zoneMap(f, 2);
            }
            {
                frmWZ_2 f;
                zoneMap(f, 3);
            }
            {
                frmClimaEN f;
                zoneMap(f, 6);
            }
            for (int16_t region = 1; region <= 12; ++region) {
                frmEN_SZ f(region);
                zoneMap(f, 1);
            }
            {
                frmWindCategory100 f;
                chooser(f, [&] { f.WCat(2); });
            }
            {
                frmWindCategory100_WithoutGrf f;
                chooser(f, [&] { f.WCat(2); });
            }
            {
                frmWindCategoryEN f;
                chooser(f, [&] { f.WCat(2); });
            }
            {
                frmWindCategoryEN_BS f;
                chooser(f, [&] { f.WCat(2); });
            }
            {
                frmOrographic f;
                chooser(f, [&] {
                    f.gPhi = 0.1;
                    f.sFac = 0.4;
                });
            }
        }
        {
            // Town dialogs. The shipped tables hold no municipalities: the
            // lists stand empty until the official lists are imported.
            frmSelTown town;
            town.Localize();
            shoot(town);
            frmSelTown_1 townEN;
            townEN.LandKey(50);
            townEN.Localize();
            shoot(townEN);
            frmEditAGSDB edit;
            edit.Load();
            edit.Current.AGS = "05315000";
            edit.Current.BL_Name = "Nordrhein-Westfalen";
            edit.Current.Reg_Name = "Reg.-Bez. Köln";
            edit.Current.LK_Name = "Köln, Stadt";
            edit.Current.Gemeinde = "Köln, Stadt";
            edit.Current.PLZ = "50667";
            edit.Current.WZ = "1";
            edit.Current.SZ = "1";
            edit.UpdateData(false);
            edit.Localize();
            shoot(edit);
            frmWLZ_Ort_1 wind1;
            frmWLZ_Ort wind;
            frmSLZ_Ort_1 snow1;
            frmSLZ_Ort snow;
            for (ZoneTownForm* f : std::initializer_list<ZoneTownForm*>{&wind1, &wind, &snow1, &snow}) {
                f->UpdateData(false);
                f->Localize();
                shoot(*f);
            }
        }
    }
    return failed == 0 ? 0 : 1;
}
