#include "Drill.h"

#include <cmath>

#include "../host/RealNumbers.h"

Drill::Drill(int16_t variable, int16_t type, int16_t order, std::string name)
    : Variable(variable), Type(type), Name(std::move(name)),
      Method(type != 0 ? MethodNeatIntervals : MethodDistinctValues), Order(order) {}

double Drill::StdDev() const {
    if (N < 1)
        return -1.0;
    if (N == 1)
        return 0.0;
    return std::sqrt(SS / (N - 1));
}

void Drill::SetMethod(int32_t method, int32_t n, int32_t atMinimum, double step, double start) {
    Method = method;
    ExactN = n;
    NeatN = n;
    AtMinimum = atMinimum;
    Step = step;
    Start = start;
}

int32_t Drill::GetMethod(int32_t& type, int32_t& n, int32_t& atMinimum, double& step,
                         double& start) const {
    type = Type;
    n = Method == MethodExactIntervals ? ExactN : NeatN;
    atMinimum = AtMinimum;
    step = Step;
    start = Start;
    return Method;
}

int Drill::GetMinMax(double& min, double& max) const {
    min = Min;
    max = Max;
    return 1;
}

int Drill::SetDescriptives(double min, double max, double mean, double ss, int32_t n) {
    Min = min;
    Max = max;
    Mean = mean;
    SS = ss;
    N = n;
    return 1;
}

int Drill::SetUserLimits(const double* limits, int count) {
    NU = count;
    for (int i = 0; i < count; ++i)
        UserInterv[i] = limits[i];
    return 1;
}

int Drill::ResetCounts() {
    for (const ::Categories& category : Categories)
        Mutable(category).Count = 0;
    Isset = 0;
    return 1;
}
