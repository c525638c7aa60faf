#pragma once
// What the four municipal zone dialogs share: a state combo, then a typed
// filter and a list per level (region, county, municipality; the snow
// dialogs have no region level), and the zone of the chosen municipality in
// a result box. The _1 dialogs read the DIBt lists, the others those of the
// expert reports; wind and snow differ in their levels and records.

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "controls/Form.h"
#include "controls/QVButtons.h"
#include "controls/QVLabel.h"
#include "controls/QVTextBox.h"
#include "location/modSLZMdb.h"
#include "location/modWLZMdb.h"

namespace qvrl {

class ZoneTownForm : public Form {
public:
    void UpdateData(bool save, const std::string& hint = {}) override;
    void Localize() override;

    double GemeindeKey() const { return key_; }
    const std::string& GemeindeName() const { return name_; }
    // The zone text of the chosen municipality (GemeindeWZ or GemeindeSZ).
    const std::string& GemeindeZone() const { return zone_; }

    // Set while a filter box has just taken the focus: the release of the
    // key that brought it there is not a filter edit.
    bool FilterBusy = false;

    Label& lbBL;
    ComboBox& cbBL;
    QVFrame* fraBez = nullptr;
    TextBox* txtBez = nullptr;
    ComboBox* lstBez = nullptr;
    QVFrame& fraLK;
    TextBox& txtLK;
    ComboBox& lstLK;
    ListView* fxgLK = nullptr;
    QVFrame& fraGemeinde;
    TextBox& txtGemeinde;
    ComboBox& lstGemeinde;
    ListView& lvGemeinde;
    ListView& gridGemeinde;
    QVFrame* fraGem2 = nullptr;
    ListView* fxgGem = nullptr;
    QVTextBox& txtZone;  // txtWZ or txtSZ
    Label& lblLength;
    Label& lblRem;
    Label* lblRem2 = nullptr;
    QVButtons& QVButtons1;

protected:
    // wind: with the region level; dibt: the _1 dialogs with their grids.
    ZoneTownForm(bool wind, bool dibt, const char* caption, const char* remark);

    void Form_Load() override;
    void Form_Activate() override { Localize(); }

    bool wind_;
    bool dibt_;
    int16_t code_ = 0;  // WLZ or SLZ as the caller handed it

private:
    struct Entry {
        int32_t id;
        std::string name;
        std::string zone;
    };
    void FillRegions();
    void FillCounties();
    void FillTowns();
    // Adds the entries the filter or the level's rule lets through; with
    // exactly one, it is chosen (its id returned), else 0.
    int32_t FillLevel(TextBox& filter, ComboBox& list, const std::vector<Entry>& entries,
                      const std::function<bool(size_t)>& rule);
    void FillGrids(const std::vector<Entry>& towns, const std::vector<int32_t>& ids);
    void ChooseRegion(int32_t id);
    void ChooseCounty(int32_t id);
    void ChooseTown(int32_t id);
    void ShowResult();
    void GridSelected(ListView& grid, int32_t row, bool county);
    void FilterKeyUp(TextBox& box, int16_t key);
    void OnOk();
    void OnCancel();

    std::vector<ZoneStateRec> states_;
    std::vector<WlzRegionRec> regions_;
    std::vector<WlzCountyRec> wCounties_;
    std::vector<WlzTownRec> wTowns_;
    std::vector<SlzCountyRec> sCounties_;
    std::vector<SlzTownRec> sTowns_;
    ZoneStateRec state_;
    WlzRegionRec region_;
    WlzCountyRec wCounty_;
    WlzTownRec wTown_;
    SlzCountyRec sCounty_;
    SlzTownRec sTown_;
    double key_ = 0.0;
    std::string name_;
    std::string zone_;
    bool gridUpdating_ = false;
};

// The caption of the result box: the name, or its first 15 characters and
// " ..." when it is wider than the box's caption field.
std::string ZoneResultCaption(const std::string& name, int32_t nameTwips, int32_t fieldTwips);

}  // namespace qvrl
