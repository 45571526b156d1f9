/* The C interface of libquorvel: classes created by name, members reached by name with variants. */
#ifndef QUORVEL_H
#define QUORVEL_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/*
 * Every function returns a status: QUORVEL_OK, or the automation error number of the failure
 * (438 no such member, 13 type mismatch, 6 overflow, 429 no such class, 91 no object, 5 invalid
 * argument, 482 printer error, ...). quorvel_last_error gives the number and message of the
 * calling thread's last call. Nothing is thrown across this interface.
 *
 * Threads: objects are not locked. Build and print one document per thread; the company profile
 * (ClassCompanyInfo) and the system printer are shared by the whole process, so a host that
 * prints on the system printer from several threads takes turns itself.
 */
#define QUORVEL_OK 0

typedef struct quorvel_object quorvel_object; /* a handle to one reference to a Quorvel object */

typedef enum quorvel_type {
  QUORVEL_EMPTY = 0,
  QUORVEL_BOOLEAN = 1, /* value.boolean: 0 false, anything else true */
  QUORVEL_INTEGER = 2, /* value.integer: 16 bits */
  QUORVEL_LONG = 3,    /* value.long_value: 32 bits */
  QUORVEL_SINGLE = 4,  /* value.single */
  QUORVEL_DOUBLE = 5,  /* value.real */
  QUORVEL_TEXT = 6,    /* value.text: UTF-8, NUL-terminated */
  QUORVEL_OBJECT = 7   /* value.object: a document, line, printer, surface or collection; NULL is Nothing */
} quorvel_type;

/*
 * A value crossing the interface. Values the caller builds are only read (owned stays 0). Texts
 * and objects the library hands out (results, by-reference write-backs) have owned = 1 and are
 * given back with quorvel_variant_clear.
 */
typedef struct quorvel_variant {
  int32_t type; /* quorvel_type */
  int32_t owned;
  union {
    int32_t boolean;
    int16_t integer;
    int32_t long_value;
    float single;
    double real;
    const char* text;
    quorvel_object* object;
  } value;
} quorvel_variant;

/* Creates an object of a creatable class: "Quorvel.ClassInvoice" (the prefix and case are optional). */
int32_t quorvel_create(const char* class_name, quorvel_object** object);

/* Reads a property (or calls a method without arguments) into *result, which may be NULL. */
int32_t quorvel_get(quorvel_object* object, const char* member, quorvel_variant* result);

/* Sets a property; an object value sets an object property (Set). */
int32_t quorvel_put(quorvel_object* object, const char* member, const quorvel_variant* value);

/*
 * Calls a method with `count` arguments in declaration order; trailing optional ones may be left
 * out. Arguments the method takes by reference and changes are written back into args[i] (as
 * owned values; an owned value replaced there is released first). *result may be NULL.
 */
int32_t quorvel_call(quorvel_object* object, const char* member, quorvel_variant* args, int32_t count,
                     quorvel_variant* result);

/* Gives up one handle; the object lives on while documents or other handles still hold it. NULL is allowed.
   A handle already given back (or never given out) is refused with error 91; every other function
   refuses such a handle the same way. */
int32_t quorvel_release(quorvel_object* object);

/* Releases an owned text or object and sets the variant to QUORVEL_EMPTY; a caller's own variant is only emptied. */
int32_t quorvel_variant_clear(quorvel_variant* value);

/* Frees a text the library allocated on its own (quorvel_printer_last_results). NULL is allowed. */
int32_t quorvel_text_free(char* text);

/* *same = 1 when both handles refer to the same object, else 0. */
int32_t quorvel_same_object(const quorvel_object* first, const quorvel_object* second, int32_t* same);

/* The number and message of the calling thread's last call (0 and "" after a success). Giving
   back (quorvel_release, quorvel_variant_clear, quorvel_text_free) leaves it as it was, except
   quorvel_release of a handle that is not alive. The message stays valid until this thread's next call of another function. */
int32_t quorvel_last_error(int32_t* number, const char** message);

/* A handle to the process-wide system printer, the surface every PrintIt draws on. */
int32_t quorvel_system_printer(quorvel_object** printer);

/* Where the system printer's next documents go: a file ending in .pdf, .png (one file per page),
   .svg, .jsonl (drawing operations) or .escpos (a receipt printer's bytes, with the options of
   quorvel_printer_set_escpos at their defaults); paper "a4", "letter" or "roll" (NULL keeps the
   paper). */
int32_t quorvel_printer_set_output(const char* path, const char* paper);

/* Sends the system printer's next documents to a print queue, as PDF print jobs: the default
   destination when queue is NULL or "", else the queue of that name. */
int32_t quorvel_printer_set_queue(const char* queue, const char* paper);

/* Sends the system printer's next documents to a thermal receipt printer speaking ESC/POS: each
   page as a raster image the width of the roll, then a feed and, when cut is non-zero, a partial
   cut; a non-zero drawer adds the cash-drawer pulse. destination: "tcp://HOST" or
   "tcp://HOST:PORT" (port 9100 when none is given), a device node such as "/dev/usb/lp0",
   "cups://QUEUE" for a raw print queue ("cups://" for the default one), or a file NAME.escpos.
   paper_mm 80 or 58, dpi 203 or 180, timeout_seconds 1 to 3600; paper as for
   quorvel_printer_set_output. A printer that cannot be reached or does not take the whole job
   makes the PrintIt fail with error 482. */
int32_t quorvel_printer_set_escpos(const char* destination, int32_t paper_mm, int32_t dpi, int32_t cut,
                                   int32_t drawer, int32_t timeout_seconds, const char* paper);

/* PDF/A-3b (on non-zero) for the system printer's current output, which must be a .pdf file of
   quorvel_printer_set_output; any other output refuses it with error 5. It lasts until on is 0
   or the output is set again: quorvel_printer_set_output, _set_queue and _set_escpos start a
   fresh output without PDF/A and without attachments, so call this after them. */
int32_t quorvel_printer_set_pdfa(int32_t on);

/* Carries the file at path inside every next PDF of the system printer's current output (a .pdf
   file; any other output refuses it with error 5). The file is read now: a missing or unreadable
   one is error 75 naming it, and later changes to it are not seen. mime_type NULL or "" comes
   from the ending (.xml text/xml, .pdf, .json, .csv, .txt, anything else
   application/octet-stream); relationship NULL or "" is Alternative for a file named
   factur-x.xml (the Factur-X / ZUGFeRD invoice, which a PDF/A document also describes in its
   metadata) and Unspecified for any other, else one of Alternative, Data, Source, Supplement,
   Unspecified; description may be NULL. A second file of the same name is refused. Attachments
   last like quorvel_printer_set_pdfa. */
int32_t quorvel_printer_attach(const char* path, const char* mime_type, const char* relationship,
                               const char* description);

/* Removes every attachment of the system printer's current output. */
int32_t quorvel_printer_clear_attachments(void);

/* Ends the document in progress on the system printer (for routines that leave it to the host,
   such as ClassCheckPrinter.PrintChecks). Does nothing when no document is open. */
int32_t quorvel_printer_end_doc(void);

/* Abandons the document in progress on the system printer: nothing of it is output. For a host
   whose own call of a document routine on the printer failed half-way. */
int32_t quorvel_printer_kill_doc(void);

/* What the last finished document produced: its files, or "job QUEUE-ID" for a print job, one
   per line, in a text freed with quorvel_text_free; and its page count. Either may be NULL. */
int32_t quorvel_printer_last_results(char** results, int32_t* pages);

/* The library's version, "MAJOR.MINOR.PATCH" (a static text; never fails, never freed). */
const char* quorvel_version(void);

/* The warnings of the last finished document on the system printer, one per line, in a text
   freed with quorvel_text_free: each names characters no installed font has, drawn as the
   missing-glyph box ("missing glyph U+1F600 in \"...\""). Empty text when there were none. */
int32_t quorvel_printer_last_warnings(char** warnings, int32_t* count);

/* Strict text mode for the whole process (strict non-zero): a character no installed font has
   becomes an error raised before its line is drawn, so the document is abandoned unwritten. */
int32_t quorvel_set_strict_text(int32_t strict);

/* A new in-memory preview surface of the given size in twips (A4 is 11906 x 16838). */
int32_t quorvel_preview_create(double width, double height, quorvel_object** preview);

#ifdef __cplusplus
}
#endif

#endif /* QUORVEL_H */
