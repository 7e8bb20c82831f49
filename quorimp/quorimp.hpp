// The class interface of quorimp: every public class header, and the C interface.
#ifndef QUORIMP_QUORIMP_HPP
#define QUORIMP_QUORIMP_HPP

#include "common/basic_image.h"
#include "common/image.h"
#include "geometric/blobs/binary_connected_component.h"
#include "geometric/blobs/binary_connected_component_iterator.h"
#include "geometric/blobs/binary_run.h"
#include "geometric/blobs/binary_stroke.h"
#include "geometric/blobs/connected_component_calculator.h"
#include "geometric/blobs/no_delete_pool_allocator.h"
#include "geometric/blobs/no_delete_pool_allocator_iterator.h"
#include "geometric/blobs/run_list_allocator.h"
#include "geometric/blobs/run_list_arena.h"
#include "geometric/blobs/runs_in_image.h"
#include "geometric/blobs/runs_in_line.h"
#include "geometric/operators/binary_image_operator.h"
#include "geometric/operators/image_operator.h"
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
