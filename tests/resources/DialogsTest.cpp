// The dialog templates: the controls that the code and the front ends rely on, their exact
// captions, and a layout that fits.

#include <gtest/gtest.h>

#include <map>
#include <set>
#include <string>
#include <vector>

#include "drilldown/resources/Dialogs.h"

namespace {

using K = DialogControlKind;

const DialogTemplate& Dialog(int id) {
    const DialogTemplate* dialog = FindDialogTemplate(id);
    EXPECT_NE(dialog, nullptr) << id;
    return dialog != nullptr ? *dialog : AllDialogTemplates().front();
}

TEST(DialogTemplates, TitlesSizesFontsAndPages) {
    struct Row {
        int id;
        const char* title;
        int width, height;
        const char* font;
    };
    const Row rows[] = {
        {4813, "Drill-Down ", 205, 334, "MS Sans Serif"},
        {4814, "Base", 193, 134, "MS Sans Serif"},
        {4815, "Catégorisation", 192, 134, "MS Sans Serif"},
        {4816, "Etudier", 192, 134, "MS Sans Serif"},
        {4817, "Options", 211, 134, "MS Sans Serif"},
        {4818, "Sélectionnez la catégorie ", 162, 101, "Helv"},
        {4819, "Ordre du drill-down ", 176, 101, "Helv"},
        {4820, "Spécifiez les Limites de ", 207, 116, "Helv"},
    };
    ASSERT_EQ(AllDialogTemplates().size(), std::size(rows));
    for (std::size_t i = 0; i < std::size(rows); ++i) {
        const DialogTemplate& dialog = AllDialogTemplates()[i];
        SCOPED_TRACE(rows[i].id);
        EXPECT_EQ(&dialog, FindDialogTemplate(rows[i].id));
        EXPECT_EQ(dialog.Title, rows[i].title);
        EXPECT_EQ(dialog.Width, rows[i].width);
        EXPECT_EQ(dialog.Height, rows[i].height);
        EXPECT_EQ(dialog.Font.Face, rows[i].font);
        EXPECT_EQ(dialog.Font.PointSize, 8);
    }
    EXPECT_EQ(FindDialogTemplate(4821), nullptr);
    const DialogTemplate& panel = Dialog(DlgStartupPanel);
    EXPECT_EQ(panel.TabControlId, 200);
    EXPECT_EQ(std::vector<int>(panel.Pages.begin(), panel.Pages.end()),
              (std::vector<int>{4814, 4815, 4816, 4817}));
}

// Every control, per template: the ids, and the labels without id by their caption.
TEST(DialogTemplates, HaveExactlyTheirControls) {
    const std::map<int, std::set<int>> ids = {
        {4813, {2,    200,  201,  202,  203,  204,  9050, 9052, 9053, 9054,
                9055, 9056, 9057, 9085, 9103, 9106, 9108, 9126, 9128, 10710}},
        {4814, {9058, 9059, 9060, 9061, 9086, 9112, 9119, 9121}},
        {4815,
         {9064, 9065, 9066, 9067, 9068, 9069, 9070, 9071, 9072, 9073, 9074, 9075, 9077, 9078,
          9079}},
        {4816,
         {9051, 9080, 9081, 9082, 9083, 9084, 9100, 9107, 9109, 9110, 9113, 9122, 9123, 9124}},
        {4817, {9106, 9114, 9115, 9116, 9117, 9118, 9127}},
        {4818, {1, 2, 9088, 9102}},
        {4819, {1, 2, 9089, 9090, 9091, 9092}},
        {4820, {1, 2, 9093, 9094, 9095, 9096, 9097, 9098, 9099, 9101}},
    };
    std::map<int, std::vector<std::string>> labels = {
        {4813,
         {"Catégorielle(s) :", "Continue(s) :", "Variables du drill-down :",
          "Variables du drill-up :"}},
        {4818, {"Variable :"}},
        {4819, {"Ordre actuel", "Nouvel ordre"}},
    };
    for (const DialogTemplate& dialog : AllDialogTemplates()) {
        SCOPED_TRACE(dialog.Id);
        std::set<int> ownIds;
        std::vector<std::string> ownLabels;
        for (const DialogControl& control : dialog.Controls) {
            if (control.Id != NoControlId)
                ownIds.insert(control.Id);
            else if (control.Kind == K::Label)
                ownLabels.emplace_back(control.Caption);
            else
                ADD_FAILURE() << "a control without id that is no label: " << control.Caption;
        }
        EXPECT_EQ(ownIds, ids.at(dialog.Id));
        EXPECT_EQ(ownLabels, labels[dialog.Id]);
        // Ids are unique across a panel and its pages, but for the panel's own 9106.
        std::map<int, int> seen;
        for (const DialogControl& control : dialog.Controls)
            ++seen[control.Id];
        for (const int page : dialog.Pages)
            for (const DialogControl& control : Dialog(page).Controls)
                ++seen[control.Id];
        seen.erase(NoControlId);
        for (const auto& [id, count] : seen)
            EXPECT_TRUE(count == 1 || (id == 9106 && dialog.Id == 4813 && count == 2)) << id;
    }
}

// Ids that the module's code addresses, with the dialog or page that holds them.
TEST(DialogTemplates, ControlsThatTheCodeUses) {
    struct Row {
        int dialog, control, owner;
        DialogControlKind kind;
    };
    const Row rows[] = {
        {4813, 9053, 4813, K::ListBox},    // drill-down list
        {4813, 9054, 4813, K::ListBox},    // drill-up list
        {4813, 9103, 4813, K::PushButton}, // brushing, enabled with the drill-down list
        {4813, 9106, 4813, K::CheckBox},   // the panel's own, ahead of the Options page's
        {4813, 9069, 4815, K::RadioButton}, {4813, 9070, 4815, K::IntEdit},
        {4813, 9072, 4815, K::RealEdit},    {4813, 9107, 4816, K::CheckBox},
        {4818, 9102, 4818, K::ListView},    {4819, 9089, 4819, K::ListBox}, // unplaced variables
        {4819, 9090, 4819, K::ListBox},                                     // placed variables
        {4819, 9091, 4819, K::PushButton},                                  // place
        {4819, 9092, 4819, K::PushButton},                                  // take back
        {4820, 1, 4820, K::DefaultButton},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(std::to_string(row.dialog) + "/" + std::to_string(row.control));
        const DialogControlPlace place = FindDialogControl(Dialog(row.dialog), row.control);
        ASSERT_NE(place.Control, nullptr);
        EXPECT_EQ(place.Owner->Id, row.owner);
        EXPECT_EQ(place.Control->Kind, row.kind);
    }
    EXPECT_EQ(FindDialogControl(Dialog(4819), 9053).Control, nullptr);
    EXPECT_EQ(FindDialogControl(Dialog(4813), NoControlId).Control, nullptr);
}

TEST(DialogTemplates, CaptionsAsWritten) {
    struct Row {
        int owner, control;
        const char* caption;
    };
    const Row rows[] = {
        {4813, 9056, "!372&Bas"},
        {4813, 9055, "j&Ordre"},
        {4813, 203, "`O&uvrir"},
        {4813, 9052, "  --"},
        {4814, 9121, "!248Tracés empi&lés "}, // with its trailing blank
        {4816, 9124, "!248Tracés empi&lés"},  // without
        {4820, 9097, "     2  2.5  5"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(std::to_string(row.owner) + "/" + std::to_string(row.control));
        const DialogControlPlace place = FindDialogControl(Dialog(row.owner), row.control);
        ASSERT_NE(place.Control, nullptr);
        EXPECT_EQ(place.Owner->Id, row.owner);
        EXPECT_EQ(place.Control->Caption, row.caption);
    }
}

bool Inside(const DialogRect& r, int width, int height) {
    return r.X >= 0 && r.Y >= 0 && r.Width > 0 && r.Height > 0 && r.X + r.Width <= width &&
           r.Y + r.Height <= height;
}

bool Overlap(const DialogRect& a, const DialogRect& b) {
    return a.X < b.X + b.Width && b.X < a.X + a.Width && a.Y < b.Y + b.Height &&
           b.Y < a.Y + a.Height;
}

// Controls lie inside their dialog, a page's inside the tab control's display area, and
// apart from the frames no two controls cover each other.
TEST(DialogTemplates, LayoutFits) {
    const DialogTemplate& panel = Dialog(DlgStartupPanel);
    const DialogRect tab = FindDialogControl(panel, panel.TabControlId).Control->Rect;
    const std::set<int> pages(panel.Pages.begin(), panel.Pages.end());
    for (const DialogTemplate& dialog : AllDialogTemplates()) {
        const bool isPage = pages.contains(dialog.Id);
        const int width = isPage ? tab.Width - 4 : dialog.Width;
        const int height = isPage ? tab.Height - 14 - 4 : dialog.Height;
        for (const DialogControl& a : dialog.Controls) {
            SCOPED_TRACE(std::to_string(dialog.Id) + "/" + std::string(a.Caption));
            EXPECT_TRUE(Inside(a.Rect, width, height));
            if (a.Kind == K::GroupBox)
                continue;
            for (const DialogControl& b : dialog.Controls) {
                if (&a == &b || b.Kind == K::GroupBox)
                    continue;
                EXPECT_FALSE(Overlap(a.Rect, b.Rect)) << b.Caption;
            }
        }
    }
}

} // namespace
