// The class interface of quorimp: every public class header, and the C interface.
#ifndef QUORIMP_QUORIMP_HPP
#define QUORIMP_QUORIMP_HPP

#include "common/basic_image.h"
#include "common/image.h"
#include "geometric/binarization/binarization.h"
#include "geometric/binarization/binarization_enginee.h"
#include "geometric/binarization/binarization_method.h"
#include "geometric/binarization/geometricexception.h"
#include "geometric/binarization/image.h"
#include "geometric/binarization/local_statistics.h"
#include "geometric/binarization/otsu_binarization.h"
#include "geometric/binarization/sauvola_binarization.h"
#include "geometric/binarization/sauvola_binarization_original.h"
#include "geometric/binarization/sauvola_para.h"
#include "geometric/binarization/wolf_binarization_original.h"
#include "geometric/operators/geo_despeckle.h"
#include "geometric/primitives/coordinate.h"
#include "geometric/primitives/direction.h"
#include "geometric/primitives/geobox.h"
#include "geometric/primitives/geocoordinate.h"
#include "geometric/primitives/geoline_base.h"
#include "geometric/primitives/geoline_base_points.h"
#include "geometric/primitives/line_distance_calculator.h"
#include "geometric/rectification/control_points.h"
#include "geometric/rectification/control_points_transformer.h"
#include "geometric/rectification/projective_matrix.h"
#include "geometric/rectification/projective_matrix_estimator.h"
#include "quorimp/image_c_api_transformer.h"
#include "quorimp/quorimp.h"

#endif
