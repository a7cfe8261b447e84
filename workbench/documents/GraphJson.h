#pragma once
// A graph document as JSON, for programs that read a session's output:
//
//   {"kind":"graph","command":ID,"number":N,"type":"histogram"|"pie"|"stacked"|"boxplot"|
//    "scatter-matrix"|"histogram3d","titles":[...],"xTitle":...,"yTitle":...,
//    "series":[{"x":[...],"y":[...],"labels":[...],"name":...,"colour":C,"barWidth":W}],
//    "xAxis":{"min":..,"max":..,"step":..,"labels":[{"at":..,"text":..}]},"yAxis":{...}}
//
// then, for the graphs drawn from the cases, what they draw:
//   "boxes":{"style":52,"statistics":"Médiane/Quartiles/Etendue","variables":[{"variable":V,
//     "name":..,"longName":..,"cases":n,"weight":W,"centre":..,"boxLow":..,"boxHigh":..,
//     "whiskerLow":..,"whiskerHigh":..,"min":..,"max":..}]}
//   "scatter":{"mode":M,"diagonal":true,"columns":[VARIABLE],"rows":[VARIABLE],
//     "cells":[{"row":r,"column":c,"cases":n,"weight":W,"correlation":r,"drawn":k}]}
//   "histogram3d":{"kind":K,"x":VARIABLE,"y":VARIABLE,"xBins":[BIN],"yBins":[BIN],
//     "counts":[[...]],"cases":n,"weight":W}
// where VARIABLE is {"variable":V,"name":..,"longName":..,"min":..,"max":..}, BIN is
// {"lower":..,"upper":..,"label":..} and counts[i][j] is the weighted count of x bin i and
// y bin j.
//
// Keys stand in that order. A number that is not finite is null.

#include <string>

#include <nlohmann/json.hpp>

#include "workbench/documents/GraphDocument.h"

namespace wb {

nlohmann::ordered_json graphJson(const GraphDocument& graph);
// Indented by two, ending in a line feed; bytes that are not UTF-8 become U+FFFD.
std::string graphJsonText(const GraphDocument& graph);

} // namespace wb
