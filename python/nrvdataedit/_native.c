/* The Python package's native part: thin functions over the C interface
   (NrvDataEdit.h). Handles are capsules; the classes, the exceptions and
   the conversions people see are in __init__.py. Every function holds the
   GIL, so one handle is never used by two threads at once. */
#define PY_SSIZE_T_CLEAN
#include <Python.h>

#include "NrvDataEdit.h"

static const char kProfile[] = "nrvdataedit.Profile";
static const char kRuleSet[] = "nrvdataedit.RuleSet";

/* Outputs up to this size are edited into the stack, then copied once. */
#define STACK_OUTPUT 512

static PyObject* Ref(PyObject* object)
{
    Py_INCREF(object);
    return object;
}

static void FreeProfile(PyObject* capsule)
{
    NrvProfileFree(PyCapsule_GetPointer(capsule, kProfile));
}

static void FreeRuleSet(PyObject* capsule)
{
    NrvRuleSetFree(PyCapsule_GetPointer(capsule, kRuleSet));
}

/* The handle in a capsule: a profile (*ppRuleSet null) or a rule set. */
static int Handle(PyObject* capsule, TNrvProfile** ppProfile, TNrvRuleSet** ppRuleSet)
{
    *ppProfile = NULL;
    *ppRuleSet = NULL;
    if (PyCapsule_IsValid(capsule, kProfile))
        *ppProfile = PyCapsule_GetPointer(capsule, kProfile);
    else if (PyCapsule_IsValid(capsule, kRuleSet))
        *ppRuleSet = PyCapsule_GetPointer(capsule, kRuleSet);
    else
        PyErr_SetString(PyExc_TypeError, "not a profile or a rule set");
    return *ppProfile != NULL || *ppRuleSet != NULL;
}

/* Sets the Python error for a call of the C interface that failed itself
   (not an edit that failed); returns NULL. */
static PyObject* CallFailed(NRVRESULT result)
{
    if (result == NRV_ERR_OUT_OF_MEMORY)
        return PyErr_NoMemory();
    const char* name = NULL;
    NrvGetResultName(result, &name, NULL);
    PyErr_Format(PyExc_SystemError, "the C interface refused a call (%s, %lld)", name != NULL ? name : "?",
                 (long long)result);
    return NULL;
}

static PyObject* Text(const char* text)
{
    return PyUnicode_DecodeUTF8(text, (Py_ssize_t)strlen(text), "backslashreplace");
}

/* (code, offset, length, command, message, rule, line, column, error count, report) */
static PyObject* InfoTuple(const TNrvErrorInfo* info)
{
    PyObject* rule = info->nRule == NRV_NO_RULE ? Ref(Py_None) : PyLong_FromSize_t(info->nRule);
    if (rule == NULL)
        return NULL;
    return Py_BuildValue("(LnnNNNnnnN)", (long long)info->nCode, (Py_ssize_t)info->nOffset,
                         (Py_ssize_t)info->nLength, Text(info->pszCommand), Text(info->pszMessage), rule,
                         (Py_ssize_t)info->nLine, (Py_ssize_t)info->nColumn, (Py_ssize_t)info->nErrorCount,
                         Text(info->pszReport));
}

/* new_handle(rule set: bool) -> a new profile or rule set */
static PyObject* NewHandle(PyObject* module, PyObject* args)
{
    (void)module;
    int ruleSet;
    if (!PyArg_ParseTuple(args, "p", &ruleSet))
        return NULL;
    TNrvProfile* profile = NULL;
    TNrvRuleSet* rules = NULL;
    const NRVRESULT result = ruleSet ? NrvRuleSetNew(&rules) : NrvProfileNew(&profile);
    if (result < 0)
        return CallFailed(result);
    PyObject* capsule =
        ruleSet ? PyCapsule_New(rules, kRuleSet, FreeRuleSet) : PyCapsule_New(profile, kProfile, FreeProfile);
    if (capsule == NULL) {
        NrvProfileFree(profile);
        NrvRuleSetFree(rules);
    }
    return capsule;
}

/* parse(profile, expression: bytes) -> info */
static PyObject* Parse(PyObject* module, PyObject* args)
{
    (void)module;
    PyObject* capsule;
    const char* expression;
    TNrvErrorInfo info;
    if (!PyArg_ParseTuple(args, "Oy", &capsule, &expression))
        return NULL;
    TNrvProfile* profile = PyCapsule_GetPointer(capsule, kProfile);
    if (profile == NULL)
        return NULL;
    const NRVRESULT result = NrvProfileParse(profile, expression, &info);
    return result == NRV_ERR_OUT_OF_MEMORY ? PyErr_NoMemory() : InfoTuple(&info);
}

/* enable_command_sets(profile, sets: int) -> info */
static PyObject* EnableCommandSets(PyObject* module, PyObject* args)
{
    (void)module;
    PyObject* capsule;
    unsigned int sets;
    TNrvErrorInfo info;
    if (!PyArg_ParseTuple(args, "OI", &capsule, &sets))
        return NULL;
    TNrvProfile* profile = PyCapsule_GetPointer(capsule, kProfile);
    if (profile == NULL)
        return NULL;
    const NRVRESULT result = NrvProfileEnableCommandSets(profile, sets, &info);
    if (result == NRV_ERR_OUT_OF_MEMORY || result == NRV_ERR_INVALID_PARAMETER)
        return CallFailed(result);
    return InfoTuple(&info);
}

/* set_settings(profile, names: tuple of bytes, values: tuple of bytes) -> info */
static PyObject* SetSettings(PyObject* module, PyObject* args)
{
    (void)module;
    PyObject *capsule, *names, *values;
    if (!PyArg_ParseTuple(args, "OO!O!", &capsule, &PyTuple_Type, &names, &PyTuple_Type, &values))
        return NULL;
    TNrvProfile* profile = PyCapsule_GetPointer(capsule, kProfile);
    if (profile == NULL)
        return NULL;
    const Py_ssize_t count = PyTuple_GET_SIZE(names);
    if (PyTuple_GET_SIZE(values) != count)
        return PyErr_Format(PyExc_ValueError, "as many values as names are needed");
    const char** texts = PyMem_Calloc((size_t)count * 2 + 1, sizeof *texts);
    if (texts == NULL)
        return PyErr_NoMemory();
    for (Py_ssize_t i = 0; i < count; ++i) {
        texts[i] = PyBytes_AsString(PyTuple_GET_ITEM(names, i));
        texts[count + i] = PyBytes_AsString(PyTuple_GET_ITEM(values, i));
        if (texts[i] == NULL || texts[count + i] == NULL) {
            PyMem_Free(texts);
            return NULL;
        }
    }
    TNrvErrorInfo info;
    const NRVRESULT result = NrvProfileSetSettings(profile, texts, texts + count, (size_t)count, &info);
    PyMem_Free(texts);
    return result == NRV_ERR_OUT_OF_MEMORY ? PyErr_NoMemory() : InfoTuple(&info);
}

/* read_rules(rule set, text: bytes, name: bytes) -> info */
static PyObject* ReadRules(PyObject* module, PyObject* args)
{
    (void)module;
    PyObject* capsule;
    Py_buffer text;
    const char* name;
    if (!PyArg_ParseTuple(args, "Oy*y", &capsule, &text, &name))
        return NULL;
    TNrvRuleSet* rules = PyCapsule_GetPointer(capsule, kRuleSet);
    PyObject* answer = NULL;
    if (rules != NULL) {
        TNrvErrorInfo info;
        const NRVRESULT result = NrvRuleSetReadText(rules, text.buf, (size_t)text.len, name, &info);
        answer = result == NRV_ERR_OUT_OF_MEMORY ? PyErr_NoMemory() : InfoTuple(&info);
    }
    PyBuffer_Release(&text);
    return answer;
}

/* rule_names(rule set) -> list of str */
static PyObject* RuleNames(PyObject* module, PyObject* capsule)
{
    (void)module;
    TNrvRuleSet* rules = PyCapsule_GetPointer(capsule, kRuleSet);
    size_t count = 0;
    if (rules == NULL || NrvRuleSetGetRuleCount(rules, &count) < 0)
        return NULL;
    PyObject* names = PyList_New((Py_ssize_t)count);
    for (size_t i = 0; names != NULL && i < count; ++i) {
        const char* name = "";
        NrvRuleSetGetRuleName(rules, i, &name);
        PyObject* text = Text(name);
        if (text == NULL)
            Py_CLEAR(names);
        else
            PyList_SET_ITEM(names, (Py_ssize_t)i, text);
    }
    return names;
}

/* edit(handle, scan, symbology) -> bytes, or the code of a failed edit;
   for a rule set (that, rule index or None). */
static PyObject* Edit(PyObject* module, PyObject* args)
{
    (void)module;
    PyObject *capsule, *scan;
    int symbology;
    TNrvProfile* profile;
    TNrvRuleSet* rules;
    if (!PyArg_ParseTuple(args, "OOi", &capsule, &scan, &symbology) || !Handle(capsule, &profile, &rules))
        return NULL;
    Py_buffer view;
    if (PyObject_GetBuffer(scan, &view, PyBUF_SIMPLE) < 0)
        return NULL;
    char stack[STACK_OUTPUT];
    size_t length = 0, rule = NRV_NO_RULE;
    NRVRESULT result =
        profile != NULL
            ? NrvProfileEditInto(profile, view.buf, (size_t)view.len, symbology, stack, sizeof stack, &length)
            : NrvRuleSetEditInto(rules, view.buf, (size_t)view.len, symbology, stack, sizeof stack, &length, &rule);
    PyObject* output = NULL;
    if (result == NRV_ERR_BUFFER_TOO_SMALL) {
        /* A longer output: edited once more, straight into the bytes object. */
        output = PyBytes_FromStringAndSize(NULL, (Py_ssize_t)length);
        if (output == NULL) {
            PyBuffer_Release(&view);
            return NULL;
        }
        result = profile != NULL ? NrvProfileEditInto(profile, view.buf, (size_t)view.len, symbology,
                                                      PyBytes_AS_STRING(output), length + 1, &length)
                                 : NrvRuleSetEditInto(rules, view.buf, (size_t)view.len, symbology,
                                                      PyBytes_AS_STRING(output), length + 1, &length, &rule);
    } else if (result == NRV_OK_NOT_TRIGGERED && PyBytes_CheckExact(scan)) {
        output = Ref(scan);  /* left alone: the same bytes */
    } else if (result >= 0) {
        output = PyBytes_FromStringAndSize(stack, (Py_ssize_t)length);
    }
    PyBuffer_Release(&view);
    if (result == NRV_ERR_OUT_OF_MEMORY || result == NRV_ERR_INVALID_PARAMETER) {
        Py_XDECREF(output);
        return CallFailed(result);
    }
    if (result < 0) {
        Py_XDECREF(output);
        output = PyLong_FromLongLong((long long)result);
    }
    if (output == NULL || profile != NULL)
        return output;
    if (rule == NRV_NO_RULE)
        return Py_BuildValue("(NO)", output, Py_None);
    return Py_BuildValue("(Nn)", output, (Py_ssize_t)rule);
}

/* edit_many(handle, scans, symbology, keep failed, rule objects or None)
   -> (outputs, index of the first failed scan or -1, that scan).
   A failed scan's output is the scan when keep is true, else None; for a
   rule set each output is (output, rule objects[rule] or None). */
static PyObject* EditMany(PyObject* module, PyObject* args)
{
    (void)module;
    PyObject *capsule, *scans, *ruleObjects;
    int symbology, keep;
    TNrvProfile* profile;
    TNrvRuleSet* rules;
    if (!PyArg_ParseTuple(args, "OOipO", &capsule, &scans, &symbology, &keep, &ruleObjects) ||
        !Handle(capsule, &profile, &rules))
        return NULL;
    PyObject* sequence = PySequence_Fast(scans, "scans must be an iterable of bytes-like objects");
    if (sequence == NULL)
        return NULL;
    const Py_ssize_t count = PySequence_Fast_GET_SIZE(sequence);
    PyObject** items = PySequence_Fast_ITEMS(sequence);
    const size_t n = (size_t)count + 1;
    Py_buffer* views = PyMem_Calloc(n, sizeof *views);
    const char** data = PyMem_Calloc(n, sizeof *data);
    size_t* lengths = PyMem_Calloc(n, sizeof *lengths);
    size_t* ends = PyMem_Calloc(n, sizeof *ends);
    size_t* ruleOf = PyMem_Calloc(n, sizeof *ruleOf);
    NRVRESULT* codes = PyMem_Calloc(n, sizeof *codes);
    char* outputs = NULL;
    PyObject *list = NULL, *answer = NULL;
    Py_ssize_t viewed = 0, failed = -1;
    if (views == NULL || data == NULL || lengths == NULL || ends == NULL || ruleOf == NULL || codes == NULL) {
        PyErr_NoMemory();
        goto done;
    }
    /* bytes are read in place; other bytes-like objects through their buffers. */
    for (Py_ssize_t i = 0; i < count; ++i) {
        if (PyBytes_CheckExact(items[i])) {
            data[i] = PyBytes_AS_STRING(items[i]);
            lengths[i] = (size_t)PyBytes_GET_SIZE(items[i]);
            continue;
        }
        if (PyObject_GetBuffer(items[i], &views[i], PyBUF_SIMPLE) < 0) {
            PyErr_Format(PyExc_TypeError, "scans[%zd] is not bytes-like: %.100s", i, Py_TYPE(items[i])->tp_name);
            goto done;
        }
        viewed = i + 1;
        data[i] = views[i].buf;
        lengths[i] = (size_t)views[i].len;
    }
    const NRVRESULT result =
        profile != NULL
            ? NrvProfileEditMany(profile, (size_t)count, data, lengths, symbology, codes, &outputs, ends)
            : NrvRuleSetEditMany(rules, (size_t)count, data, lengths, symbology, codes, &outputs, ends, ruleOf);
    if (result < 0) {
        CallFailed(result);
        goto done;
    }
    list = PyList_New(count);
    for (Py_ssize_t i = 0, start = 0; list != NULL && i < count; start = (Py_ssize_t)ends[i++]) {
        PyObject* output;
        if (codes[i] < 0 && failed < 0)
            failed = i;
        if (codes[i] < 0 && !keep)
            output = Ref(Py_None);
        else if (codes[i] != NRV_OK && PyBytes_CheckExact(items[i]))
            output = Ref(items[i]);  /* unchanged: the same bytes */
        else
            output = PyBytes_FromStringAndSize(outputs + start, (Py_ssize_t)ends[i] - start);
        if (output != NULL && rules != NULL) {
            PyObject* rule = ruleOf[i] != NRV_NO_RULE && ruleObjects != Py_None
                                 ? PySequence_GetItem(ruleObjects, (Py_ssize_t)ruleOf[i])
                                 : Ref(Py_None);
            if (rule == NULL)
                Py_CLEAR(output);
            else
                output = Py_BuildValue("(NN)", output, rule);
        }
        if (output == NULL)
            Py_CLEAR(list);
        else
            PyList_SET_ITEM(list, i, output);
    }
    if (list != NULL)
        answer = Py_BuildValue("(NnO)", list, failed, failed >= 0 ? items[failed] : Py_None);
done:
    for (Py_ssize_t i = 0; views != NULL && i < viewed; ++i) {
        if (views[i].obj != NULL)
            PyBuffer_Release(&views[i]);
    }
    NrvFree(outputs);
    PyMem_Free(views);
    PyMem_Free(data);
    PyMem_Free(lengths);
    PyMem_Free(ends);
    PyMem_Free(ruleOf);
    PyMem_Free(codes);
    Py_DECREF(sequence);
    return answer;
}

/* Why the edit of a scan fails (info), or the explanation of its edit
   (the JSON text), from the arguments (handle, scan, symbology). */
static PyObject* Examine(PyObject* args, int explain)
{
    PyObject* capsule;
    Py_buffer scan;
    int symbology;
    TNrvProfile* profile;
    TNrvRuleSet* rules;
    if (!PyArg_ParseTuple(args, "Oy*i", &capsule, &scan, &symbology))
        return NULL;
    PyObject* answer = NULL;
    if (Handle(capsule, &profile, &rules)) {
        const char* data = scan.buf;
        const size_t length = (size_t)scan.len;
        TNrvErrorInfo info;
        char* json = NULL;
        size_t jsonLength = 0;
        NRVRESULT result;
        if (explain)
            result = profile != NULL ? NrvProfileExplain(profile, data, length, symbology, &json, &jsonLength)
                                     : NrvRuleSetExplain(rules, data, length, symbology, &json, &jsonLength);
        else
            result = profile != NULL ? NrvProfileDescribeFailure(profile, data, length, symbology, &info)
                                     : NrvRuleSetDescribeFailure(rules, data, length, symbology, &info);
        if (result < 0)
            answer = CallFailed(result);
        else
            answer = explain ? PyUnicode_DecodeASCII(json, (Py_ssize_t)jsonLength, "strict") : InfoTuple(&info);
        NrvFree(json);
    }
    PyBuffer_Release(&scan);
    return answer;
}

static PyObject* DescribeFailure(PyObject* module, PyObject* args)
{
    (void)module;
    return Examine(args, 0);
}

static PyObject* Explain(PyObject* module, PyObject* args)
{
    (void)module;
    return Examine(args, 1);
}

/* symbology(name: str) -> its number, or -1 */
static PyObject* Symbology(PyObject* module, PyObject* args)
{
    (void)module;
    const char* name;
    int id = -1;
    if (!PyArg_ParseTuple(args, "s", &name))
        return NULL;
    if (NrvGetSymbology(name, &id) < 0)
        id = -1;
    return PyLong_FromLong(id);
}

/* code_name(code) -> "NRV_..." or None */
static PyObject* CodeName(PyObject* module, PyObject* args)
{
    (void)module;
    long long code;
    const char* name = NULL;
    if (!PyArg_ParseTuple(args, "L", &code))
        return NULL;
    if (NrvGetResultName((NRVRESULT)code, &name, NULL) < 0)
        Py_RETURN_NONE;
    return PyUnicode_FromString(name);
}

static PyObject* Version(PyObject* module, PyObject* args)
{
    (void)module;
    (void)args;
    int major = 0, minor = 0, patch = 0;
    NrvGetVersion(&major, &minor, &patch);
    return Py_BuildValue("(iii)", major, minor, patch);
}

static PyMethodDef kMethods[] = {
    {"new_handle", NewHandle, METH_VARARGS, "A new rule set (True) or profile (False)."},
    {"parse", Parse, METH_VARARGS, "Parses an expression into a profile; the error information."},
    {"enable_command_sets", EnableCommandSets, METH_VARARGS, "Replaces a profile's command sets; the parse's information."},
    {"set_settings", SetSettings, METH_VARARGS, "Replaces a profile's triggers and limits; the error information."},
    {"read_rules", ReadRules, METH_VARARGS, "Reads a rules text into a rule set; the error information."},
    {"rule_names", RuleNames, METH_O, "The names of a rule set's rules."},
    {"edit", Edit, METH_VARARGS, "Edits one scan."},
    {"edit_many", EditMany, METH_VARARGS, "Edits a batch of scans in one call."},
    {"describe_failure", DescribeFailure, METH_VARARGS, "Why the edit of a scan fails."},
    {"explain", Explain, METH_VARARGS, "What an edit does, node by node, as JSON text."},
    {"symbology", Symbology, METH_VARARGS, "A symbology's number by name or number, or -1."},
    {"code_name", CodeName, METH_VARARGS, "A result code's name, or None."},
    {"version", Version, METH_NOARGS, "The library's version."},
    {NULL, NULL, 0, NULL},
};

static struct PyModuleDef kModule = {
    PyModuleDef_HEAD_INIT, "nrvdataedit._native", "The C interface of the data-editing engine.", -1, kMethods,
    NULL, NULL, NULL, NULL,
};

PyMODINIT_FUNC PyInit__native(void)
{
    PyObject* module = PyModule_Create(&kModule);
    if (module != NULL && PyModule_AddIntConstant(module, "COMMAND_SET_GS1", NRV_COMMAND_SET_GS1) < 0)
        Py_CLEAR(module);
    return module;
}
