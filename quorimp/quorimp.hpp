// The class interface of quorimp: every public class header, and the C interface.
#ifndef QUORIMP_QUORIMP_HPP
#define QUORIMP_QUORIMP_HPP

#include "common/basic_image.h"
#include "common/image.h"
#include "geometric/primitives/coordinate.h"
#include "geometric/primitives/direction.h"
#include "geometric/primitives/geobox.h"
#include "geometric/primitives/geocoordinate.h"
#include "geometric/primitives/geoline_base.h"
#include "geometric/primitives/geoline_base_points.h"
#include "geometric/primitives/line_distance_calculator.h"
#include "geometric/rectification/color_transform.h"
#include "geometric/rectification/control_points.h"
#include "geometric/rectification/control_points_transformer.h"
#include "geometric/rectification/correction.h"
#include "geometric/rectification/correction_para.h"
#include "geometric/rectification/projective_correction.h"
#include "geometric/rectification/projective_matrix.h"
#include "geometric/rectification/projective_matrix_estimator.h"
#include "geometric/rectification/sampling.h"
#include "quorimp/image_c_api_transformer.h"
#include "quorimp/quorimp.h"

#endif
