#pragma once
// The module's dialog resources, as plain data that every front end reads: the headless
// host declares the controls from them, a desktop front end builds its widgets from them.
//
// A template is one dialog: its id, title, size and font, and its controls in tab order,
// each with its id, kind, caption and rectangle. The start-up panel also names the tab
// control that holds its pages and the templates of those pages, in tab order; a page is a
// template of its own whose title is the text of its tab. Controls on a page belong to the
// panel's id space: control ids are unique across a panel and its pages, with one exception,
// check box 9106, which sits both on the panel and on the "Options" page and drives the one
// flag in both places.
//
// Units and conventions:
//   - Sizes and positions are dialog units of the dialog's font (a horizontal unit is a
//     quarter of the font's average character width, a vertical unit an eighth of its
//     height). A page's controls are placed relative to the page, inside the display area of
//     the tab control: its rectangle less a 14-unit tab strip at the top and a 2-unit frame
//     on each side.
//   - Captions are UTF-8 exactly as the user will see them before markup: an icon prefix
//     ("!372", or a code letter such as "j") and "&" before the mnemonic are kept, as are
//     trailing blanks. ParseCaption (Caption.h) gives the visible text.
//   - A label taller than one line wraps its text; a button caption wraps only when the
//     button has ControlStyle::MultiLine.
//   - Controls that the code never addresses have id -1 (NoControlId).
//
// To use: FindDialogTemplate(id) for one dialog, AllDialogTemplates() to walk them all,
// FindDialogControl(dialog, id) to find a control on a dialog or one of its pages.

#include <span>
#include <string_view>

enum DialogId : int {
    DlgStartupPanel = 4813,
    DlgBasePage = 4814,
    DlgCategorisationPage = 4815,
    DlgReviewPage = 4816,
    DlgOptionsPage = 4817,
    DlgCategory = 4818,
    DlgOrder = 4819,
    DlgLimits = 4820,
};

inline constexpr int NoControlId = -1;

enum class DialogControlKind {
    PushButton,
    DefaultButton, // the push button that Enter presses
    CheckBox,
    RadioButton,
    GroupBox, // a frame with a caption around the controls that follow it
    Label,
    HelpText, // a label in the host's help style
    Edit,
    IntEdit,  // edit for a whole number; its range is set at run time
    RealEdit, // edit for a real number; its range is set at run time
    ListBox,
    ListView, // list with columns; the columns are added at run time
    TabControl,
};

// What a control shows beyond its kind; several can be combined with |.
enum class ControlStyle : unsigned {
    None = 0,
    Hidden = 1u << 0,    // created invisible; its command can still be sent
    MultiLine = 1u << 1, // an edit of several lines; a button whose caption wraps
    VerticalScroll = 1u << 2,
    ReportView = 1u << 3, // list view: one row per item, in columns with headers
    SingleSelection = 1u << 4,
    ShowSelectionAlways = 1u << 5, // keeps the selection visible when the list loses focus
    NoSort = 1u << 6,              // rows stay in the order they were added
};

constexpr ControlStyle operator|(ControlStyle a, ControlStyle b) {
    return static_cast<ControlStyle>(static_cast<unsigned>(a) | static_cast<unsigned>(b));
}

struct DialogRect {
    int X = 0;
    int Y = 0;
    int Width = 0;
    int Height = 0;
};

struct DialogControl {
    int Id = NoControlId;
    DialogControlKind Kind = DialogControlKind::Label;
    std::string_view Caption; // with the host's markup; empty for none
    DialogRect Rect;
    ControlStyle Styles = ControlStyle::None;

    constexpr bool HasStyle(ControlStyle style) const {
        return (static_cast<unsigned>(Styles) & static_cast<unsigned>(style)) != 0;
    }
};

struct DialogFont {
    std::string_view Face;
    int PointSize = 0;
};

struct DialogTemplate {
    int Id = 0;
    std::string_view Title; // for a page, the text of its tab
    int Width = 0;          // dialog units
    int Height = 0;
    DialogFont Font;
    std::span<const DialogControl> Controls; // in tab order
    int TabControlId = 0;                    // 0: the dialog has no tab pages
    std::span<const int> Pages = {};         // templates of the pages, in tab order
};

// A control found on a dialog or on one of its pages.
struct DialogControlPlace {
    const DialogTemplate* Owner = nullptr; // the dialog itself or the page
    const DialogControl* Control = nullptr;
};

// The template of dialog `id`, or null for an id the module does not have.
const DialogTemplate* FindDialogTemplate(int id);

// All templates, by ascending id.
std::span<const DialogTemplate> AllDialogTemplates();

// Control `controlId` of the dialog, looked for on the dialog itself and then on its pages in
// tab order; the first found is given. Both pointers are null when there is none, and always
// for NoControlId.
DialogControlPlace FindDialogControl(const DialogTemplate& dialog, int controlId);
