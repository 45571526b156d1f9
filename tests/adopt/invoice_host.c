/* A downstream host in C: an invoice with one item printed to a PDF through an installed Quorvel.
   With a second argument "queue" it also prints to a queue at an unreachable scheduler, to show
   that the print-queue device came with the library. */
#include <stdio.h>
#include <string.h>

#include <quorvel.h>

static quorvel_variant value_of(int32_t type) {
  quorvel_variant v;
  memset(&v, 0, sizeof v);
  v.type = type;
  return v;
}

static int check(int32_t status, const char* what) {
  int32_t number = 0;
  const char* message = "";
  if (status == QUORVEL_OK) return 1;
  quorvel_last_error(&number, &message);
  printf("error %d in %s: %s\n", (int)number, what, message);
  return 0;
}

static int put(quorvel_object* target, const char* member, const char* text) {
  quorvel_variant v = value_of(QUORVEL_TEXT);
  v.value.text = text;
  return check(quorvel_put(target, member, &v), member);
}

static int print_invoice(quorvel_object* printer, quorvel_object* invoice) {
  quorvel_variant args[2];
  args[0] = value_of(QUORVEL_OBJECT);
  args[0].value.object = invoice;
  args[1] = value_of(QUORVEL_BOOLEAN);
  args[1].value.boolean = 1;
  return check(quorvel_call(printer, "PrintIt", args, 2, NULL), "PrintIt");
}

static int add_item(quorvel_object* invoice) {
  quorvel_object* item = NULL;
  quorvel_variant arg = value_of(QUORVEL_OBJECT);
  int ok = check(quorvel_create("ClassInvoiceItem", &item), "ClassInvoiceItem") &&
           put(item, "ItemName", "LEDGER-A4") && put(item, "Description", "Bound ledger, A4") &&
           put(item, "Quantity", "3") && put(item, "UnitPrice", "18.40") && put(item, "Total", "55.20");
  arg.value.object = item;
  ok = ok && check(quorvel_call(invoice, "AddItem", &arg, 1, NULL), "AddItem");
  quorvel_release(item);
  return ok;
}

int main(int argc, char** argv) {
  quorvel_object *invoice = NULL, *printer = NULL;
  char* results = NULL;
  int ok;
  if (argc < 2) {
    fprintf(stderr, "usage: invoice_host OUT.pdf [queue]\n");
    return 2;
  }
  printf("quorvel %s\n", quorvel_version());
  ok = check(quorvel_printer_set_output(argv[1], "a4"), "output") &&
       check(quorvel_create("Quorvel.ClassInvoice", &invoice), "ClassInvoice") &&
       check(quorvel_create("Quorvel.ClassInvoicePrinter", &printer), "ClassInvoicePrinter") &&
       put(invoice, "printTitle", "Invoice") && put(invoice, "InvoiceNumber", "INV-ADOPT-0042") &&
       put(invoice, "InvoiceDate", "02/11/2026") && put(invoice, "CustomerShortName", "Wrenfield Books") &&
       add_item(invoice) && print_invoice(printer, invoice) &&
       check(quorvel_printer_last_results(&results, NULL), "results");
  if (ok) printf("wrote %s\n", results);
  quorvel_text_free(results);
  if (ok && argc > 2 && strcmp(argv[2], "queue") == 0) {
    /* Expected to fail: what matters is which layer says so. */
    if (check(quorvel_printer_set_queue("no-such-queue", NULL), "queue")) print_invoice(printer, invoice);
  }
  quorvel_release(printer);
  quorvel_release(invoice);
  return ok ? 0 : 1;
}
