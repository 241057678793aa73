#pragma once

// The jobs, by subject; each function adds its rows.

namespace bench {

void AddProjectionJobs();
void AddSamplingJobs();
void AddRenderJobs();
void AddTableJobs();
void AddRotationJobs();

} // namespace bench
