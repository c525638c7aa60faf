#include "catalogue/modLiveLoadMDB.h"

#include "interchange/modAscii.h"
#include "store/StoreFiles.h"
#include "store/modDAO.h"
#include "support/ModuleState.h"
#include "support/errors.h"
#include "support/vb.h"
#include "vocab/CodeLists.h"

namespace qvrl {

namespace {

// A fixed string holds characters, not bytes: a cut must not split one.
std::string ToFixedString(const std::string& text, std::size_t length) {
    std::string out;
    std::size_t chars = 0;
    for (std::size_t i = 0; i < text.size() && chars < length; ++chars) {
        std::size_t n = 1;
        const auto lead = static_cast<unsigned char>(text[i]);
        if (lead >= 0xF0) n = 4;
        else if (lead >= 0xE0) n = 3;
        else if (lead >= 0xC0) n = 2;
        out.append(text, i, n);
        i += n;
    }
    out.append(length - chars, ' ');
    return out;
}

}  // namespace

std::string LiveLoadQuery(int16_t norm, int16_t art) {
    if (norm >= 1)
        return "SELECT * FROM liveload WHERE Norm = " + std::to_string(norm) + " AND Art = " + std::to_string(art) +
               " ORDER BY ID";
    if (norm == liveload::AllNorms) return "SELECT * FROM liveload ORDER BY Norm, ID";
    return "SELECT * FROM liveload ORDER BY ID";
}

bool InitLiveLoadMdb() {
    ModuleState& st = State();
    if (st.LiveLoadDb) return true;
    try {
        st.LiveLoadDb = OpenDB(ShippedDataFile("qvrl.mdb"), Variant(), Variant(true));
    } catch (const RuntimeError&) {
        return false;
    }
    return true;
}

void ReadLiveLoads(int16_t norm, int16_t art, std::vector<LiveLoadRec>& rows) {
    rows.assign(1, LiveLoadRec{});
    if (!InitLiveLoadMdb()) return;
    auto rs = State().LiveLoadDb->OpenRecordset(LiveLoadQuery(norm, art), dao::dbOpenSnapshot);
    Field& fNorm = rs->Fields("Norm");
    Field& fNormBez = rs->Fields("NormBez");
    Field& fZeile = rs->Fields("Zeile");
    Field& fBT = rs->Fields("BT");
    Field& fKategorie = rs->Fields("Kategorie");
    Field& fUnterkategorie = rs->Fields("Unterkategorie");
    Field& fNutzung = rs->Fields("Nutzung");
    Field& fKurztext = rs->Fields("Kurztext");
    Field& fLangtext = rs->Fields("Langtext");
    Field& fWert = rs->Fields("Wert");
    Field& fWert2 = rs->Fields("Wert2");
    for (; !rs->EOF_(); rs->MoveNext()) {
        LiveLoadRec r;
        r.Norm = CInt(NzNumber(fNorm));
        r.NormBez = ToFixedString(NzText(fNormBez), liveload::NormBezLength);
        r.Zeile = NzText(fZeile);
        r.BT = NzText(fBT);
        r.Kategorie = NzText(fKategorie);
        r.Unterkategorie = NzText(fUnterkategorie);
        r.Nutzung = NzText(fNutzung);
        r.Kurztext = NzText(fKurztext);
        r.Langtext = NzText(fLangtext);
        SplitLongText(r.Langtext);
        if (Trim(r.Kurztext).empty() && !r.Langtext.empty()) r.Kurztext = r.Langtext;
        r.Wert = NzNumber(fWert);
        r.Wert2 = NzNumber(fWert2);
        rows.push_back(std::move(r));
    }
}

void LiveLoadNorms(std::vector<int16_t>& codes, std::vector<std::string>& names) {
    codes.assign(1, 0);
    names.assign(1, std::string());
    std::vector<LiveLoadRec> rows;
    ReadLiveLoads(liveload::AllNorms, 0, rows);
    for (std::size_t i = 1; i < rows.size(); ++i) {
        const int16_t code = rows[i].Norm;
        if (!IsCatalogueNorm(code)) continue;
        bool listed = false;
        for (std::size_t k = 1; k < codes.size() && !listed; ++k) listed = codes[k] == code;
        if (listed) continue;
        codes.push_back(code);
        names.push_back(FixedStringText(rows[i].NormBez));
    }
}

std::string FixedStringText(const std::string& fixed) {
    std::string t = fixed.substr(0, fixed.find('\0'));
    t.erase(t.find_last_not_of(' ') + 1);
    return t;
}

bool SumsAdditionalLoad(int16_t norm) { return norm != 78 && norm != 211; }

double LiveLoadDesignValue(int16_t norm, double grundwert, double zuschlag) {
    return SumsAdditionalLoad(norm) ? fp::Add(grundwert, zuschlag) : grundwert;
}

}  // namespace qvrl
