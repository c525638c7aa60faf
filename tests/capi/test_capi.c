/* The C API as a C host calls it. Each check prints a line on failure; the
 * program ends with "N passed, N failed" and fails when any check did. */

#include <math.h>
#include <stdlib.h>
#include <stdio.h>
#include <string.h>

#include "qvroofload.h"

static int passed, failed;

#define CHECK(cond)                                                           \
    do {                                                                      \
        if (cond) {                                                           \
            ++passed;                                                         \
        } else {                                                              \
            ++failed;                                                         \
            printf("%s:%d: check failed: %s\n", __FILE__, __LINE__, #cond);   \
        }                                                                     \
    } while (0)

static int is_double(const qvrl_value* v, double want) {
    return v->type == QVRL_DOUBLE && v->u.dbl == want;
}

static int is_text(const qvrl_value* v, const char* want) {
    return v->type == QVRL_STRING && v->u.str.length == strlen(want) && strcmp(v->u.str.data, want) == 0;
}

static qvrl_handle new_object(const char* cls) {
    qvrl_handle h = 0;
    CHECK(qvrl_create(cls, &h) == QVRL_OK);
    CHECK(h != 0);
    return h;
}

/* Calls a member with doubles and returns its status; *out gets the result. */
static qvrl_status call_d(qvrl_handle h, const char* member, const double* a, size_t n, qvrl_value* out) {
    qvrl_value args[8];
    size_t i;
    for (i = 0; i < n; ++i) args[i] = qvrl_double(a[i]);
    return qvrl_call(h, member, args, n, out);
}

/* Figures the rules fix exactly: the API hands them over unchanged. */
static void test_results(qvrl_handle ws) {
    static const struct {
        const char* member;
        double args[4];
        size_t n;
        double want;
    } cases[] = {
        {"WindReferencePressure_DIN1055_4_2005", {5}, 1, 0.66},
        {"WindReferencePressure_DIN1055_4_2005", {2}, 1, 0.39},
        {"WindReferencePressure_DIN1055_4_2005", {9}, 1, 0.0}, /* unknown zone */
        {"WindPressure_DIN1055_4_1986", {8.0}, 1, 0.5},
        {"WindPressure_DIN1055_4_1986", {8.1}, 1, 0.8},
        {"windpressure_din1055_4_1986", {8.0}, 1, 0.5}, /* names are case-blind */
        {"SnowBagMue1", {0}, 0, 0.8},
    };
    size_t i;
    for (i = 0; i < sizeof cases / sizeof cases[0]; ++i) {
        qvrl_value r;
        CHECK(call_d(ws, cases[i].member, cases[i].args, cases[i].n, &r) == QVRL_OK);
        CHECK(r.owned == 1);
        if (!is_double(&r, cases[i].want)) printf("  case %u: %s\n", (unsigned)i, cases[i].member);
        CHECK(is_double(&r, cases[i].want));
        qvrl_value_clear(&r);
    }
}

/* Arguments convert with Basic's rules, whatever tag they come with. */
static void test_argument_conversion(qvrl_handle ws) {
    qvrl_value args[4], r;
    args[0] = qvrl_string("2");
    CHECK(qvrl_call(ws, "WindReferencePressure_DIN1055_4_2005", args, 1, &r) == QVRL_OK);
    CHECK(is_double(&r, 0.39));
    args[0] = qvrl_double(2.5); /* half to even: zone 2 */
    CHECK(qvrl_call(ws, "WindReferencePressure_DIN1055_4_2005", args, 1, &r) == QVRL_OK);
    CHECK(is_double(&r, 0.39));
    args[0] = qvrl_bool(1); /* True is -1: no zone */
    CHECK(qvrl_call(ws, "WindReferencePressure_DIN1055_4_2005", args, 1, &r) == QVRL_OK);
    CHECK(is_double(&r, 0.0));
    args[0] = qvrl_int32(40000); /* beyond 16 bits */
    CHECK(qvrl_call(ws, "WindReferencePressure_DIN1055_4_2005", args, 1, &r) == QVRL_STATUS_OF(6));
    CHECK(r.type == QVRL_EMPTY);
}

static void test_errors(qvrl_handle ws) {
    static const double bag[2] = {100.0, 0.0};
    qvrl_value args[2], r;
    qvrl_status st;

    st = call_d(ws, "SnowBagMue2", bag, 2, &r);
    CHECK(st == 0x800A000Bu);
    CHECK(QVRL_ERROR_NUMBER(st) == 11);
    CHECK(qvrl_last_error_number() == 11);
    CHECK(strcmp(qvrl_last_error_description(), "Division by zero") == 0);
    CHECK(r.type == QVRL_EMPTY);

    /* A success clears the record. */
    CHECK(call_d(ws, "SnowBagMue1", NULL, 0, &r) == QVRL_OK);
    CHECK(qvrl_last_error_number() == 0);
    CHECK(strcmp(qvrl_last_error_description(), "") == 0);

    CHECK(call_d(ws, "NoSuchMember", NULL, 0, &r) == QVRL_STATUS_OF(438));
    CHECK(qvrl_last_error_number() == 438);
    CHECK(call_d(ws, "SnowMue1", NULL, 0, &r) == QVRL_STATUS_OF(450));
    CHECK(qvrl_last_error_number() == 450);
    CHECK(call_d(ws, "SnowMue1", bag, 2, &r) == QVRL_STATUS_OF(450));

    args[0] = qvrl_string("steep");
    CHECK(qvrl_call(ws, "SnowMue1", args, 1, &r) == QVRL_STATUS_OF(13));
    CHECK(qvrl_last_error_number() == 13);
    args[0].type = 77; /* no such tag */
    CHECK(qvrl_call(ws, "SnowMue1", args, 1, &r) == QVRL_STATUS_OF(13));
    args[0] = qvrl_double(NAN);
    CHECK(qvrl_call(ws, "SnowMue1", args, 1, &r) == QVRL_STATUS_OF(5));
    args[0] = qvrl_double(INFINITY);
    CHECK(qvrl_call(ws, "SnowMue1", args, 1, &r) == QVRL_STATUS_OF(5));
    args[0] = qvrl_string("\xC3\x28"); /* not UTF-8 */
    CHECK(qvrl_call(ws, "SnowMue1", args, 1, &r) == QVRL_STATUS_OF(5));
    args[0] = qvrl_string(NULL);
    CHECK(qvrl_call(ws, "SnowMue1", args, 1, &r) == QVRL_STATUS_OF(5));
    args[0] = qvrl_array(NULL, 3);
    CHECK(qvrl_call(ws, "SnowMue1", args, 1, &r) == QVRL_STATUS_OF(5));
    args[0] = qvrl_null();
    CHECK(qvrl_call(ws, "SnowMue1", args, 1, &r) == QVRL_STATUS_OF(94));

    /* Missing pieces of the call itself. */
    CHECK(qvrl_call(ws, NULL, NULL, 0, &r) == QVRL_STATUS_OF(5));
    CHECK(qvrl_call(ws, "SnowMue1", NULL, 1, &r) == QVRL_STATUS_OF(5));
    CHECK(qvrl_create("CNothing", NULL) == QVRL_STATUS_OF(5)); /* no place for the handle */
    {
        qvrl_handle h = 7;
        CHECK(qvrl_create("CNothing", &h) == QVRL_STATUS_OF(429));
        CHECK(h == 0);
        CHECK(strstr(qvrl_last_error_description(), "CNothing") != NULL);
        CHECK(qvrl_create(NULL, &h) == QVRL_STATUS_OF(5));
    }
    /* The result is optional. */
    CHECK(call_d(ws, "SnowBagMue1", NULL, 0, NULL) == QVRL_OK);
}

/* Handles that reach no object: never used, always error 91. */
static void test_handles(void) {
    qvrl_handle a = new_object("CWindSnow"), b, c;
    qvrl_value r;
    int16_t same = 5;

    CHECK(qvrl_call(0, "SnowBagMue1", NULL, 0, &r) == QVRL_STATUS_OF(91));
    CHECK(qvrl_last_error_number() == 91);
    CHECK(qvrl_release(0) == QVRL_OK);

    CHECK(qvrl_release(a) == QVRL_OK);
    CHECK(qvrl_call(a, "SnowBagMue1", NULL, 0, &r) == QVRL_STATUS_OF(91));
    CHECK(qvrl_release(a) == QVRL_STATUS_OF(91));
    CHECK(qvrl_get(a, "AGS", &r) == QVRL_STATUS_OF(91));

    /* The slot is used again, under a new generation: the old handle stays dead. */
    b = new_object("CWindSnow");
    CHECK(b != a);
    CHECK((b & 0xFFFFFFFFu) == (a & 0xFFFFFFFFu));
    CHECK(qvrl_call(a, "SnowBagMue1", NULL, 0, &r) == QVRL_STATUS_OF(91));
    CHECK(qvrl_call(b, "SnowBagMue1", NULL, 0, &r) == QVRL_OK);

    /* Forged: a slot never issued, a generation never given. */
    CHECK(qvrl_call((qvrl_handle)0xFFFFFFull, "SnowBagMue1", NULL, 0, &r) == QVRL_STATUS_OF(91));
    CHECK(qvrl_call(b + ((qvrl_handle)1 << 40), "SnowBagMue1", NULL, 0, &r) == QVRL_STATUS_OF(91));
    CHECK(qvrl_release(b ^ ((qvrl_handle)1 << 32)) == QVRL_STATUS_OF(91));

    /* Is: by object, not by handle. */
    c = new_object("CWindSnow");
    CHECK(qvrl_same_object(b, b, &same) == QVRL_OK && same == -1);
    CHECK(qvrl_same_object(b, c, &same) == QVRL_OK && same == 0);
    CHECK(qvrl_same_object(0, 0, &same) == QVRL_OK && same == -1);
    CHECK(qvrl_same_object(a, b, &same) == QVRL_STATUS_OF(91) && same == 0);

    CHECK(qvrl_class_of(c, &r) == QVRL_OK);
    CHECK(is_text(&r, "CWindSnow"));
    qvrl_value_clear(&r);
    CHECK(qvrl_release(b) == QVRL_OK);
    CHECK(qvrl_release(c) == QVRL_OK);
}

/* In/out arguments: written back after success, untouched after a failure. */
static void test_in_out(qvrl_handle ws) {
    qvrl_value args[6], r;
    args[0] = qvrl_int16(53);
    args[1] = qvrl_double(1.0);
    args[2] = qvrl_double(4.0);
    args[3] = qvrl_empty();
    args[4] = qvrl_empty();
    args[5] = qvrl_empty();
    CHECK(qvrl_call(ws, "SnowBag_EN_1991_1_3", args, 6, &r) == QVRL_OK);
    CHECK(r.type == QVRL_EMPTY);
    CHECK(is_double(&args[3], 5.0) && args[3].owned == 1);
    CHECK(is_double(&args[4], 5.0));
    CHECK(is_double(&args[5], 20.0));
    CHECK(is_double(&args[1], 1.0) && args[1].owned == 0); /* by value: as given */

    /* sk 0 fails inside the rule: nothing is written back. */
    args[0] = qvrl_int16(54);
    args[1] = qvrl_double(0.0);
    args[2] = qvrl_double(1.0);
    args[3] = qvrl_double(7.0);
    args[4] = qvrl_string("seven");
    args[5] = qvrl_double(7.0);
    CHECK(qvrl_call(ws, "SnowBag_EN_1991_1_3", args, 6, &r) != QVRL_OK);
    CHECK(is_double(&args[3], 7.0) && args[3].owned == 0);
    CHECK(args[4].type == QVRL_STRING && args[4].owned == 0 && strcmp(args[4].u.str.data, "seven") == 0);
}

/* Arrays out, and the same owned arrays passed in again. */
static void test_arrays(qvrl_handle ws) {
    static const char* names[] = {"", "1", "1a", "2", "2a", "3"};
    static const int16_t index[] = {0, 1, 11, 2, 21, 3};
    qvrl_value args[2], r, nine;
    size_t i, round;
    nine = qvrl_int16(9);
    args[0] = qvrl_empty();
    args[1] = qvrl_array(&nine, 1);
    for (round = 0; round < 2; ++round) {
        CHECK(qvrl_call(ws, "SnowZoneNames2005", args, 2, &r) == QVRL_OK);
        CHECK(r.type == QVRL_EMPTY);
        CHECK(args[0].type == QVRL_ARRAY && args[0].owned == 1 && args[0].u.array.count == 6);
        CHECK(args[1].type == QVRL_ARRAY && args[1].u.array.count == 6);
        if (args[0].type != QVRL_ARRAY || args[1].type != QVRL_ARRAY || args[0].u.array.count != 6 ||
            args[1].u.array.count != 6)
            break;
        for (i = 0; i < 6; ++i) {
            CHECK(is_text(&args[0].u.array.items[i], names[i]));
            CHECK(args[1].u.array.items[i].type == QVRL_INT16 && args[1].u.array.items[i].u.i16 == index[i]);
        }
    }
    CHECK(nine.type == QVRL_INT16 && nine.u.i16 == 9); /* the caller's element is untouched */
    qvrl_value_clear(&args[0]);
    qvrl_value_clear(&args[1]);
    CHECK(args[0].type == QVRL_EMPTY && args[1].type == QVRL_EMPTY);

    /* A text is not an array. */
    args[0] = qvrl_string("1");
    args[1] = qvrl_empty();
    CHECK(qvrl_call(ws, "SnowZoneNames2005", args, 2, &r) == QVRL_STATUS_OF(13));
}

/* The object property: a municipality object from the start, Nothing once dropped. */
static void test_properties(qvrl_handle ws) {
    qvrl_value v, nothing = qvrl_object(0), other;
    qvrl_handle second = new_object("CWindSnow");

    CHECK(qvrl_get(ws, "AGS", &v) == QVRL_OK);
    CHECK(v.type == QVRL_OBJECT && v.u.object != 0);
    qvrl_value_clear(&v);
    CHECK(qvrl_call(ws, "AGS", NULL, 0, &v) == QVRL_OK); /* a get as a call */
    CHECK(v.type == QVRL_OBJECT && v.u.object != 0);
    qvrl_value_clear(&v);

    CHECK(qvrl_let(ws, "ags", &nothing) == QVRL_OK);
    CHECK(qvrl_get(ws, "AGS", &v) == QVRL_OK);
    CHECK(v.type == QVRL_OBJECT && v.u.object == 0);
    v = qvrl_double(1.0);
    CHECK(qvrl_let(ws, "AGS", &v) == QVRL_STATUS_OF(13));
    other = qvrl_object(second); /* a CWindSnow is no CAGS */
    CHECK(qvrl_let(ws, "AGS", &other) == QVRL_STATUS_OF(13));
    CHECK(qvrl_let(ws, "NoSuchProperty", &nothing) == QVRL_STATUS_OF(438));
    CHECK(qvrl_get(ws, "NoSuchProperty", &v) == QVRL_STATUS_OF(438));
    CHECK(qvrl_get(ws, "SnowBagMue1", &v) == QVRL_STATUS_OF(438)); /* a method is no property */
    CHECK(qvrl_let(ws, "SnowBagMue1", &nothing) == QVRL_STATUS_OF(438));
    CHECK(qvrl_let(ws, "AGS", NULL) == QVRL_STATUS_OF(5));
    CHECK(qvrl_release(second) == QVRL_OK);
    other = qvrl_object(second);
    CHECK(qvrl_let(ws, "AGS", &other) == QVRL_STATUS_OF(91));
}

/* CRoofLoad: a coefficient request fills the table object the host holds,
 * a deprecated member answers 0, and its municipality object is reached
 * through its calculation object. */
static void test_roof_load(void) {
    qvrl_handle rl = new_object("CRoofLoad");
    qvrl_value v, table, ws, ags, args[2];
    double a[1] = {10.0};

    CHECK(qvrl_get(rl, "Norm", &v) == QVRL_OK && v.type == QVRL_INT16 && v.u.i16 == 3);
    CHECK(qvrl_get(rl, "OnOk", &v) == QVRL_OK && v.type == QVRL_BOOL && v.u.boolean == 0);
    CHECK(qvrl_get(rl, "SelectableCodesCtrl", &v) == QVRL_OK && is_text(&v, "_1_3_"));
    qvrl_value_clear(&v);
    v = qvrl_bool(1);
    CHECK(qvrl_let(rl, "OnOk", &v) == QVRL_STATUS_OF(438)); /* read-only to the host */

    CHECK(qvrl_get(rl, "WindCpTable", &table) == QVRL_OK && table.type == QVRL_OBJECT && table.u.object != 0);
    v = qvrl_double(1.0);
    CHECK(qvrl_let(table.u.object, "HzuD", &v) == QVRL_OK);
    CHECK(qvrl_call(rl, "GetWindCpValues_Vertical_Wall", NULL, 0, &v) == QVRL_OK && v.type == QVRL_EMPTY);
    CHECK(qvrl_get(table.u.object, "Area_A10", &v) == QVRL_OK && v.type == QVRL_DOUBLE && v.u.dbl < 0.0);
    CHECK(qvrl_get(table.u.object, "HzuD", &v) == QVRL_OK && is_double(&v, 1.0));
    qvrl_value_clear(&table);

    CHECK(call_d(rl, "WindPressure_DIN1055_4_1986", a, 1, &v) == QVRL_OK && is_double(&v, 0.0));
    CHECK(call_d(rl, "WindPressure_DIN1055_4_1986", a, 0, &v) == QVRL_STATUS_OF(450));

    CHECK(qvrl_get(rl, "WindSnow", &ws) == QVRL_OK && ws.type == QVRL_OBJECT && ws.u.object != 0);
    CHECK(qvrl_get(ws.u.object, "AGS", &ags) == QVRL_OK && ags.type == QVRL_OBJECT && ags.u.object != 0);
    args[0] = qvrl_string("09162000");
    CHECK(qvrl_call(ags.u.object, "Getsk", args, 1, &v) == QVRL_OK && is_double(&v, 0.0));
    args[1] = qvrl_empty();
    CHECK(qvrl_call(ags.u.object, "Getsk", args, 2, &v) == QVRL_STATUS_OF(450));
    qvrl_value_clear(&ags);
    qvrl_value_clear(&ws);
    CHECK(qvrl_release(rl) == QVRL_OK);
}

static const qvrl_member_info* find_member(const qvrl_class_info* c, const char* name, int32_t kind) {
    size_t i;
    for (i = 0; i < c->member_count; ++i)
        if (strcmp(c->members[i].name, name) == 0 && c->members[i].kind == kind) return &c->members[i];
    return NULL;
}

static void test_discovery(void) {
    const qvrl_class_info* classes = NULL;
    const qvrl_class_info* ws = NULL;
    const qvrl_member_info* m;
    size_t n = 0, i;
    CHECK(qvrl_classes(&classes, &n) == QVRL_OK);
    for (i = 0; i < n; ++i)
        if (strcmp(classes[i].name, "CWindSnow") == 0) ws = &classes[i];
    CHECK(ws != NULL);
    if (!ws) return;
    CHECK(strcmp(ws->class_id, QVRL_CLSID_CWindSnow) == 0);
    CHECK(strcmp(ws->interface_id, QVRL_IID__CWindSnow) == 0);
    CHECK(strcmp(ws->interface_name, "_CWindSnow") == 0);
    CHECK(strcmp(ws->members[0].name, "WindPressure_DIN1055_4_1986") == 0);

    m = find_member(ws, "SnowBag_EN_1991_1_3", QVRL_METHOD);
    CHECK(m != NULL);
    if (m) {
        CHECK(m->param_count == 6);
        CHECK(strcmp(m->params[0].name, "CtrlNA") == 0 && strcmp(m->params[0].type, "Integer") == 0);
        CHECK(m->params[0].by_ref == 0 && m->params[3].by_ref == -1);
        CHECK(strcmp(m->params[5].name, "LsInM") == 0);
        CHECK(strstr(m->doc, "m") != NULL);
    }
    m = find_member(ws, "AGS", QVRL_PROPERTY_GET);
    CHECK(m != NULL && m->param_count == 0 && strcmp(m->result, "Object") == 0);
    m = find_member(ws, "AGS", QVRL_PROPERTY_LET);
    CHECK(m != NULL && m->param_count == 1 && strcmp(m->params[0].type, "Object") == 0);
    CHECK(find_member(ws, "AGS", QVRL_METHOD) == NULL);
    CHECK(qvrl_classes(NULL, &n) == QVRL_STATUS_OF(5));

    CHECK(strcmp(QVRL_TYPELIB_NAME, "QVRoofLoad") == 0);
    CHECK(QVRL_TYPELIB_VERSION_MAJOR == 1 && QVRL_TYPELIB_VERSION_MINOR == 10);
    CHECK(strcmp(QVRL_TYPELIB_DOC, "Q+V Dach- und Verkehrslasten") == 0);
}

static void write_text(const char* path, const char* text) {
    FILE* f = fopen(path, "wb");
    CHECK(f != NULL);
    if (!f) return;
    fputs(text, f);
    fclose(f);
}

/* The importers load the user's own copy when no database is named; bad
 * input is error 5 naming its faults, and no report comes back. */
static void test_imports(void) {
    const char* appdata = getenv("APPDATA");
    char bad[1024], good[1024];
    qvrl_value report;
    CHECK(appdata != NULL);
    if (!appdata) return;
    snprintf(bad, sizeof bad, "%s/zones_bad.csv", appdata);
    snprintf(good, sizeof good, "%s/gemliste.csv", appdata);
    write_text(bad, "AGS;WZ\n0533;3\n");
    write_text(good,
               "Gemeindekennziffer;Gemeindename;Gemeindecode;Status;PLZ des Gem.Amtes;weitere Postleitzahlen\n"
               "10101;Eisenstadt;10101;SR;7000;\n");

    CHECK(qvrl_import_zones(bad, NULL, 50, &report) == QVRL_STATUS_OF(5));
    CHECK(report.type == QVRL_EMPTY);
    CHECK(strstr(qvrl_last_error_description(), "zones_bad.csv:2: key '0533'") != NULL);
    CHECK(qvrl_import_zones(good, "", 52, &report) == QVRL_STATUS_OF(5));
    CHECK(qvrl_import_gv100ad(NULL, NULL, &report) == QVRL_STATUS_OF(5));
    CHECK(qvrl_import_uk_figures(bad, NULL, NULL) == QVRL_STATUS_OF(5));
    CHECK(strstr(qvrl_last_error_description(), "no such folder") != NULL);

    CHECK(qvrl_import_at_municipalities(good, NULL, &report) == QVRL_OK);
    CHECK(report.type == QVRL_STRING && report.owned == 1);
    if (report.type == QVRL_STRING)
        CHECK(strstr(report.u.str.data, "  qvrl.mdb slzwlz1 (Land_ID 51): ") != NULL);
    qvrl_value_clear(&report);
}

/* The site report as a C host gets it: an owned JSON text, and bad input as
 * error 5 naming the option, with nothing handed back. */
static void test_site(void) {
    qvrl_value r;
    const char* in =
        "{\"norm\": 50, \"snow_zone\": \"2\", \"wind_zone\": 2, \"category\": 2, \"altitude\": 400, "
        "\"height\": 10, \"roof\": \"gabled\", \"pitch\": 35}";
    CHECK(qvrl_site_json(in, &r) == QVRL_OK);
    CHECK(r.owned == 1 && r.type == QVRL_STRING);
    CHECK(r.type == QVRL_STRING && strstr(r.u.str.data, "\"schema_version\":1") != NULL);
    /* 2.1 * 0.39 at z = 10 m, the German annex's category II profile */
    CHECK(r.type == QVRL_STRING && strstr(r.u.str.data, "\"peak_velocity_pressure\":{\"value\":0.819") != NULL);
    qvrl_value_clear(&r);

    CHECK(qvrl_site_json("{\"norm\": 50, \"snow_zone\": \"9\", \"roof\": \"flat\"}", &r) == QVRL_STATUS_OF(5));
    CHECK(r.type == QVRL_EMPTY);
    CHECK(strstr(qvrl_last_error_description(), "--snow-zone") != NULL);
    CHECK(qvrl_site_json("{\"norm\": 3, \"color\": 1}", &r) == QVRL_STATUS_OF(5));
    CHECK(strstr(qvrl_last_error_description(), "--color") != NULL);
    CHECK(qvrl_site_json("[1]", &r) == QVRL_STATUS_OF(5));
    CHECK(qvrl_site_json(NULL, &r) != QVRL_OK);
}

int main(void) {
    qvrl_handle ws = new_object("cwindsnow");
    test_results(ws);
    test_argument_conversion(ws);
    test_errors(ws);
    test_handles();
    test_in_out(ws);
    test_arrays(ws);
    test_properties(ws);
    test_discovery();
    test_roof_load();
    test_imports();
    test_site();
    CHECK(qvrl_release(ws) == QVRL_OK);
    printf("%d passed, %d failed\n", passed, failed);
    return failed == 0 ? 0 : 1;
}
