#pragma once

#include "document/analysis_job.h"
#include "document/chain_report_job.h"
#include "document/spec_read_job.h"
#include "document/spec_write_job.h"
