/* Hashes the grouping columns of a batch of rows and reduces a value column, the steps a
 * query engine takes for each batch of a grouped aggregate.
 *
 * 1. The int32 column `customer` and the text column `city` (some rows null) are hashed
 *    row by row. A null row's hash slot is left as it was, so the program presets it to
 *    the value it wants for a null city.
 * 2. The two hash columns are folded into one hash a row by CombineHash: rows with the
 *    same customer and the same city get the same hash, the key for a hash table.
 * 3. The float64 column `amount`, some rows null, is reduced to its largest and smallest
 *    value; the null rows are skipped, whatever value they hold.
 * Build: the examples/ folder of the project builds it as example_query_batch. */
#include <inttypes.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "zivks.h"

#define ROWS 10

/* The hash this program gives a null city: every null city lands in one group. */
#define NULL_CITY_HASH UINT64_C(0)

static const int32_t customer[ROWS] = {7, 12, 7, 31, 12, 7, 45, 31, 12, 7};
/* NULL: a null row. "" is an empty text, which is not null and has a hash of its own. */
static const char* const city[ROWS] = {"Lisbon", "Oslo", "Lisbon", NULL, "Oslo",
                                       "Porto",  "Lima", NULL,     "",   "Lisbon"};
static const double amount[ROWS] = {19.5, 250.0, 7.25, 1e9, 99.0, 310.75, -1e9, 42.0, -5.5, 12.0};
static const int8_t amount_nulls[ROWS] = {0, 0, 0, 1, 0, 0, 1, 0, 0, 0};

static int ok(ZIVKStatus st, const char* what) {
  if (st == ZIVK_STS_NO_ERR) return 1;
  fprintf(stderr, "%s: status %d (%s)\n", what, (int)st, ZIVKS_GetStatusString(st));
  return 0;
}

int main(void) {
  /* The text column as a query engine holds it: the bytes of all rows back to back,
   * ROWS + 1 offsets (row i is text[offsets[i]] up to text[offsets[i + 1]]), and one
   * null flag a row. A null row takes no bytes. */
  uint8_t text[64];
  int32_t offsets[ROWS + 1];
  int8_t city_nulls[ROWS];
  int32_t at = 0;
  for (int i = 0; i < ROWS; ++i) {
    offsets[i] = at;
    city_nulls[i] = city[i] == NULL;
    if (city[i] != NULL) {
      const size_t n = strlen(city[i]);
      memcpy(text + at, city[i], n);
      at += (int32_t)n;
    }
  }
  offsets[ROWS] = at;

  /* 1. One hash column a grouping column. */
  uint64_t customer_hash[ROWS], city_hash[ROWS], row_hash[ROWS];
  if (!ok(ZIVKS_Hash_32s(customer, ROWS, NULL, customer_hash), "ZIVKS_Hash_32s")) return EXIT_FAILURE;
  for (int i = 0; i < ROWS; ++i) city_hash[i] = NULL_CITY_HASH; /* kept by the null rows */
  if (!ok(ZIVKS_Hash_varchar(text, offsets, ROWS, city_nulls, city_hash), "ZIVKS_Hash_varchar"))
    return EXIT_FAILURE;

  /* 2. One hash a row; the order of the two columns matters. */
  if (!ok(ZIVKS_CombineHash(customer_hash, city_hash, ROWS, row_hash), "ZIVKS_CombineHash")) return EXIT_FAILURE;

  printf("a batch of %d rows, hashed by (customer, city):\n", ROWS);
  printf("  row  customer  city     row hash\n");
  for (int i = 0; i < ROWS; ++i)
    printf("  %3d  %8" PRId32 "  %-7s  %016" PRIx64 "\n", i, customer[i],
           city[i] == NULL ? "(null)" : city[i][0] == '\0' ? "(empty)" : city[i], row_hash[i]);

  printf("\nrows that share a row hash, i.e. fall into one group:\n");
  int seen[ROWS] = {0};
  for (int i = 0; i < ROWS; ++i) {
    if (seen[i]) continue;
    int members = 0;
    for (int j = i; j < ROWS; ++j) members += row_hash[j] == row_hash[i];
    if (members < 2) continue;
    printf("  rows");
    for (int j = i; j < ROWS; ++j)
      if (row_hash[j] == row_hash[i]) {
        seen[j] = 1;
        printf(" %d", j);
      }
    printf(": customer %" PRId32 ", city %s\n", customer[i], city[i] == NULL ? "(null)" : city[i]);
  }

  /* 3. The extremes of a column with null rows; rows 3 and 6 hold +-1e9 but are null. */
  double largest, smallest;
  if (!ok(ZIVKS_AggMax_64f(amount, ROWS, amount_nulls, &largest), "ZIVKS_AggMax_64f") ||
      !ok(ZIVKS_AggMin_64f(amount, ROWS, amount_nulls, &smallest), "ZIVKS_AggMin_64f"))
    return EXIT_FAILURE;
  printf("\namount, null rows 3 and 6 skipped: largest %g, smallest %g\n", largest, smallest);
  return EXIT_SUCCESS;
}
