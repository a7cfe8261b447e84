#include "Dialogs.h"

#include <algorithm>
#include <iterator>

namespace {

using enum DialogControlKind;

// The panel and its pages are drawn in the panel's font; the three modal dialogs have the
// older "Helv", which desktop systems map to their plain sans-serif face.
constexpr DialogFont PanelFont{"MS Sans Serif", 8};
constexpr DialogFont ModalFont{"Helv", 8};

constexpr ControlStyle Hidden = ControlStyle::Hidden;
constexpr ControlStyle MultiLine = ControlStyle::MultiLine;

// Layout. The resources fix sizes of the dialogs, not positions of their controls; the
// positions below are ours. They give a plain top-to-bottom reading order, leave 4 to 6
// units of margin, make buttons 14 units high and one-line labels 8, and are sized for the
// French captions in the panel's font (about 3.5 units a character). Captions too long for
// one line at the dialog's width get a rectangle two or more lines high.

// The tables keep one control to a line where it fits, which the formatter would undo.
// clang-format off

// Start-up panel, 205 by 334: the file, selection and weight buttons on top; the chosen
// variables; the two lists with the drill buttons under them; the two options; the tab
// control with the result pages; Options and Annuler at the foot.
constexpr DialogControl PanelControls[] = {
    {203, PushButton, "`O&uvrir", {4, 4, 48, 14}},
    {201, PushButton, "!246&s", {54, 4, 18, 14}},
    {202, PushButton, "!247&p", {74, 4, 18, 14}},
    {204, CheckBox, "Moments &pondérés", {98, 6, 103, 10}},
    {9126, GroupBox, "Variables pour le forage", {4, 22, 197, 40}},
    {9050, PushButton, "h&Variables", {10, 34, 54, 14}},
    {NoControlId, Label, "Catégorielle(s) :", {70, 33, 54, 8}},
    {9052, Label, "  --", {126, 33, 71, 8}},
    {NoControlId, Label, "Continue(s) :", {70, 46, 54, 8}},
    {9085, Label, "  --", {126, 46, 71, 8}},
    {9108, GroupBox, "Opérations de forage :", {4, 66, 197, 90}},
    {NoControlId, Label, "Variables du drill-down :", {10, 77, 90, 8}},
    {9053, ListBox, "", {10, 86, 90, 44}},
    {NoControlId, Label, "Variables du drill-up :", {105, 77, 90, 8}},
    {9054, ListBox, "", {105, 86, 90, 44}},
    {9056, PushButton, "!372&Bas", {10, 135, 44, 14}},
    {9103, PushButton, "!664&Balayage", {56, 135, 44, 14}},
    {9057, PushButton, "!373Ha&ut", {105, 135, 44, 14}},
    {9055, PushButton, "j&Ordre", {151, 135, 44, 14}},
    {9128, CheckBox, "Observations à &VM ignorées", {8, 160, 193, 10}},
    {9106, CheckBox, "&Mise à jour automatique des résultats", {8, 171, 193, 10}},
    {200, TabControl, "Tab1", {4, 184, 197, 128}},
    {10710, PushButton, "Op&tions", {105, 316, 46, 14}},
    {2, PushButton, "&Annuler", {155, 316, 46, 14}},
};

constexpr int PanelPages[] = {DlgBasePage, DlgCategorisationPage, DlgReviewPage, DlgOptionsPage};

// The pages keep their own sizes, but their controls stay inside 186 by 108 units from the
// page's origin, which is what the display area of tab control 200 shows: no page scrolls.

// "Base": the summary, then the five results of the drill-down variables in their frame,
// then saving the subset.
constexpr DialogControl BasePageControls[] = {
    {9058, PushButton, "!249S&ynthèse : Sélections du drill-down", {4, 2, 186, 14}},
    {9112, GroupBox, "Statistiques de toutes les variables du drill-down", {4, 19, 186, 68}},
    {9060, PushButton, "eTables de &fréquence", {10, 30, 85, 14}},
    {9061, PushButton, "!223&Histogrammes", {99, 30, 85, 14}},
    {9119, PushButton, "!280Ca&memberts", {10, 46, 85, 14}},
    {9121, PushButton, "!248Tracés empi&lés ", {99, 46, 85, 14}, Hidden},
    {9059, PushButton, "eStatistiques d&escriptives des variables du drill-down",
     {10, 62, 174, 20}, MultiLine},
    {9086, PushButton, "!654En&registrer données brutes (vars sélectionnées)", {4, 91, 186, 14}},
};

// "Catégorisation": one line per method, each with its parameters to the right of its radio.
constexpr DialogControl CategorisationPageControls[] = {
    {9079, GroupBox, "Catégorisation de la variable sélect. pour le drill-down", {4, 2, 186, 106}},
    {9064, RadioButton, "Toutes &les valeurs distinctes", {10, 13, 174, 10}},
    {9065, RadioButton, "Nombre e&xact d'intervalles :", {10, 25, 130, 10}},
    {9070, IntEdit, "", {144, 24, 40, 12}},
    {9066, RadioButton, "Intervalles '&ronds' ; nombre approximatif :", {10, 37, 130, 18},
     MultiLine},
    {9071, IntEdit, "", {144, 40, 40, 12}},
    {9067, RadioButton, "&Incrément :", {10, 58, 52, 10}},
    {9072, RealEdit, "", {64, 57, 50, 12}},
    {9078, Label, "&démarrant à :", {22, 72, 46, 8}},
    {9073, RealEdit, "", {70, 70, 44, 12}},
    {9074, Label, "ou", {118, 72, 10, 8}},
    {9075, CheckBox, "au &minimum", {130, 71, 54, 10}},
    {9068, RadioButton, "Catégories &entières", {10, 84, 130, 10}},
    {9069, RadioButton, "Catégories &personnalisées", {10, 96, 130, 10}},
    {9077, PushButton, "j", {144, 93, 20, 14}},
};

// "Etudier": the review variables as on the panel, then their results in two columns.
constexpr DialogControl ReviewPageControls[] = {
    {9080, PushButton, "hVa&riables à étudier", {4, 2, 76, 14}},
    {9109, Label, "Catégorielles :", {84, 2, 50, 8}},
    {9051, Label, "  --", {136, 2, 54, 8}},
    {9110, Label, "Continues :", {84, 12, 50, 8}},
    {9113, Label, "  --", {136, 12, 54, 8}},
    {9082, PushButton, "e&Tables de fréquence", {4, 24, 91, 14}},
    {9081, PushButton, "eStats d&escriptives", {99, 24, 91, 14}},
    {9083, PushButton, "!223&Histogrammes", {4, 40, 91, 14}},
    {9123, PushButton, "!231Histogra&mmes en 3D", {99, 40, 91, 14}},
    {9122, PushButton, "!280Ca&memberts", {4, 56, 91, 14}},
    {9084, PushButton, "!225Boîtes à moustac&hes", {99, 56, 91, 14}},
    {9100, PushButton, "!229Nuage ma&triciel", {4, 72, 91, 14}},
    {9124, PushButton, "!248Tracés empi&lés", {99, 72, 91, 14}, Hidden},
    {9107, CheckBox, "&Ignorer les obs. à VM", {4, 92, 186, 10}},
};

// "Options": the long stand-alone option wraps over four lines.
constexpr DialogControl OptionsPageControls[] = {
    {9106, CheckBox,
     "Créer des feuilles de do&nnées et des graphiques dans des fenêtres individuelles (pour "
     "le balayage) ; ces documents seront mis à jour directement après chaque opération de "
     "forage (drill-down ou drill-up).",
     {4, 2, 186, 34}, MultiLine},
    {9127, CheckBox, "Comptabiliser les V&M des variables du drill-down", {4, 40, 186, 10}},
    {9118, GroupBox, "Options des &Boîtes à Moustaches", {4, 54, 186, 54}},
    {9114, CheckBox, "Médiane/Quartiles/&Etendue", {10, 65, 174, 10}},
    {9115, CheckBox, "Moye&nne/Erreur-Type/Ecart-Type", {10, 75, 174, 10}},
    {9116, CheckBox, "Moyenne/Ecart-Type/&1.96*Ecart-Type", {10, 85, 174, 10}},
    {9117, CheckBox, "Moyenne/&Erreur-Type/1.96*Erreur-Type", {10, 95, 174, 10}},
};

// Category dialog: the variable's name, its categories, OK and Annuler at the bottom right.
constexpr DialogControl CategoryControls[] = {
    {NoControlId, Label, "Variable :", {6, 6, 36, 8}},
    {9088, Label, "  --", {44, 6, 112, 8}},
    {9102, ListView, "List3", {6, 18, 150, 58},
     ControlStyle::ReportView | ControlStyle::SingleSelection |
         ControlStyle::ShowSelectionAlways | ControlStyle::NoSort},
    {1, PushButton, "&OK", {50, 81, 50, 14}},
    {2, PushButton, "&Annuler", {106, 81, 50, 14}},
};

// Order dialog: the two lists side by side with the two move buttons between them.
constexpr DialogControl OrderControls[] = {
    {NoControlId, Label, "Ordre actuel", {6, 6, 66, 8}},
    {9089, ListBox, "", {6, 16, 66, 62}},
    {9091, PushButton, "&>>", {76, 28, 24, 14}},
    {9092, PushButton, "&<<", {76, 48, 24, 14}},
    {NoControlId, Label, "Nouvel ordre", {104, 6, 66, 8}},
    {9090, ListBox, "", {104, 16, 66, 62}},
    {1, PushButton, "&OK", {64, 82, 50, 14}},
    {2, PushButton, "&Annuler", {120, 82, 50, 14}},
};

// Limits dialog: the edit with OK and Annuler to its right, the worked example below.
constexpr DialogControl LimitsControls[] = {
    {9094, Label, "Limites de la variable :", {6, 6, 80, 8}},
    {9101, Label, "  --", {88, 6, 113, 8}},
    {9093, Edit, "", {6, 17, 139, 28}, MultiLine | ControlStyle::VerticalScroll},
    {1, DefaultButton, "&OK", {151, 17, 50, 14}},
    {2, PushButton, "&Annuler", {151, 34, 50, 14}},
    {9095, HelpText,
     "Entrez une liste de valeurs représentant les limites supérieures des étendues à "
     "représenter.",
     {6, 50, 195, 16}},
    {9096, HelpText, "Par exemple, si vous entrez les trois valeurs suivantes :", {6, 68, 195, 8}},
    {9097, HelpText, "     2  2.5  5", {6, 77, 195, 8}},
    {9098, HelpText, "un graphique avec les quatre limites suivantes sera produit :",
     {6, 86, 195, 8}},
    {9099, HelpText, "     (1) x<=2,   (2) 2<x<=2.5,   (3) 2.5<x<=5,   et  (4) 5<x",
     {6, 95, 195, 8}},
};

constexpr DialogTemplate Templates[] = {
    {DlgStartupPanel, "Drill-Down ", 205, 334, PanelFont, PanelControls, 200, PanelPages},
    {DlgBasePage, "Base", 193, 134, PanelFont, BasePageControls},
    {DlgCategorisationPage, "Catégorisation", 192, 134, PanelFont, CategorisationPageControls},
    {DlgReviewPage, "Etudier", 192, 134, PanelFont, ReviewPageControls},
    {DlgOptionsPage, "Options", 211, 134, PanelFont, OptionsPageControls},
    {DlgCategory, "Sélectionnez la catégorie ", 162, 101, ModalFont, CategoryControls},
    {DlgOrder, "Ordre du drill-down ", 176, 101, ModalFont, OrderControls},
    {DlgLimits, "Spécifiez les Limites de ", 207, 116, ModalFont, LimitsControls},
};

// clang-format on

static_assert(std::ranges::is_sorted(Templates, {}, &DialogTemplate::Id));

const DialogControl* FindOwnControl(const DialogTemplate& dialog, int controlId) {
    const auto found = std::ranges::find(dialog.Controls, controlId, &DialogControl::Id);
    return found == dialog.Controls.end() ? nullptr : &*found;
}

} // namespace

const DialogTemplate* FindDialogTemplate(int id) {
    const auto found = std::ranges::find(Templates, id, &DialogTemplate::Id);
    return found == std::end(Templates) ? nullptr : &*found;
}

std::span<const DialogTemplate> AllDialogTemplates() {
    return Templates;
}

DialogControlPlace FindDialogControl(const DialogTemplate& dialog, int controlId) {
    if (controlId == NoControlId)
        return {};
    if (const DialogControl* control = FindOwnControl(dialog, controlId))
        return {&dialog, control};
    for (const int pageId : dialog.Pages) {
        const DialogTemplate* page = FindDialogTemplate(pageId);
        if (page == nullptr)
            continue;
        if (const DialogControl* control = FindOwnControl(*page, controlId))
            return {page, control};
    }
    return {};
}
