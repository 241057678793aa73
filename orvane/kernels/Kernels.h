#pragma once

// The table of kernels. Each job has a header that states its arguments and a .inl file with its
// code; KernelTable.inl puts them together and is compiled once per instruction set.

#include "orvane/kernels/BandRotation.h"
#include "orvane/kernels/CosineEstimate.h"
#include "orvane/kernels/Evaluation.h"
#include "orvane/kernels/InstructionSet.h"
#include "orvane/kernels/Legendre.h"
#include "orvane/kernels/PointSums.h"
#include "orvane/kernels/Render.h"

namespace orvane {

struct Kernels {
    InstructionSet instructionSet;
    LegendreKernel legendre;
    EvaluationKernel evaluation;
    CosineEstimateKernel cosineEstimate;
    PointSumsKernel addWeighted;
    PointSumsKernel addPixels;
    RowLayoutKernel layRows;
    ColumnLayoutKernel layColumns;
    RenderKernel render;
    RotationKernel rotation;
};

} // namespace orvane
