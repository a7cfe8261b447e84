#pragma once
// Pictures of graph documents: one painter (GraphPainter.h) draws a GraphDocument with
// QPainter, onto an SVG generator or onto an image saved as PNG, so both show the same.
//
// Rendering needs no display: the first picture made in a process that has no Qt GUI
// application starts one on the offscreen platform (fonts come from fontconfig). Pictures
// are made on the thread that made that application, in practice the main thread.
//
// What the pictures show:
//   histogram  bars at their X with their width, the category labels under them (turned
//              by 45 degrees, then shortened with an ellipsis, when they do not fit side by
//              side), the count axis with the labels of the request and its grid, the
//              value above each bar when there is room;
//   pie        slices clockwise from the top, the share in each slice that is wide enough,
//              and a legend of label, count and share;
//   stacked    one bar per variable, the bands drawn from 100 down, the share in each band
//              that is tall enough;
//   boxplot    one panel per variable with its own scale: whiskers, box, centre line (and a
//              diamond for a mean), the number of cases under the name;
//   scatter-matrix  one plot per pair with its correlation and cases in a strip above the
//              points, names and ranges on the diagonal, values along the outer panels;
//   histogram3d     the bivariate counts as bars standing on a shaded floor in an oblique
//              projection, one colour per bin of the second variable, the count axis on
//              the left, and the counts over the bars where they do not cover each other.
// Every picture has the titles on top: the first line bold, the drill string under it. No
// text covers another. The SVG holds, over each bar, slice, band, box, plot and 3D bar, a
// transparent shape whose <title> tells its label, as the module passed it, and its value
// (a browser shows it as a tooltip).

#include <stdexcept>
#include <string>

#include "workbench/documents/GraphDocument.h"

namespace wb {

class RenderError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

struct PictureSize {
    int width = 0;
    int height = 0;
};

// The size in pixels a graph is drawn at: 960 x 640 for most, more for a scatterplot
// matrix or box plots of many variables.
PictureSize pictureSize(const GraphDocument& graph);

// The picture as SVG text (UTF-8) and as PNG bytes. Throw RenderError when Qt cannot make
// them.
std::string graphSvg(const GraphDocument& graph);
std::string graphPng(const GraphDocument& graph);

} // namespace wb
