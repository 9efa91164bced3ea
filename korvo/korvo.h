// The umbrella header: every exported class of the library.
#ifndef KORVO_KORVO_H_
#define KORVO_KORVO_H_

#include "korvo/context/auto_ini.h"
#include "korvo/context/dir_sort.h"
#include "korvo/context/proj_path.h"
#include "korvo/context/projekt_status.h"
#include "korvo/context/transformation.h"
#include "korvo/context/vaglinje.h"
#include "korvo/database/dbs_guid.h"
#include "korvo/database/dbs_records.h"
#include "korvo/database/info_prj.h"
#include "korvo/database/korvo_dbs.h"
#include "korvo/foundation/list0.h"
#include "korvo/foundation/messages.h"
#include "korvo/foundation/stdio_file_mem.h"
#include "korvo/foundation/versal_text.h"
#include "korvo/observations/korvo_tlk.h"
#include "korvo/platform/datetime.h"
#include "korvo/platform/file.h"
#include "korvo/platform/utf8.h"
#include "korvo/soundings/basic_methods.h"
#include "korvo/soundings/code_table.h"
#include "korvo/soundings/cpt_presentation.h"
#include "korvo/soundings/korvo_cpt.h"
#include "korvo/soundings/korvo_snd.h"
#include "korvo/soundings/rock_methods.h"

#endif  // KORVO_KORVO_H_
