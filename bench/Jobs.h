#pragma once

// The jobs, by subject; each function adds its rows.

#include <string>

namespace bench {

void AddProjectionJobs();
void AddSamplingJobs();
void AddRenderJobs();
void AddTableJobs();
void AddRotationJobs();

/// Option of the program that has it render one picture and end: an instruction set's name or
/// "literal" follows.
inline const std::string firstPictureOption = "--first-picture=";
void RenderFirstPicture(const std::string &how);

} // namespace bench
