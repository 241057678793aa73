#pragma once

// The table of kernels. Each kernel has a header that states its arguments and a .inl file with its
// code; KernelTable.inl puts them together and is compiled once for each instruction set.

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

/// The kernels compiled for one instruction set; all give the same bits.
/// @throws std::invalid_argument where the processor lacks it
const Kernels &KernelsFor(InstructionSet instructionSet);

/// The kernels for the widest instruction set of this processor.
const Kernels &BestKernels();

} // namespace orvane
