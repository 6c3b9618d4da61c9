// The demo scenario; examples/demo.json holds the same text.
#include "tools/zintra-sim/demo_scenario.h"

namespace zintra::simtool {

// clang-format off
const char kDemoScenario[] = R"json({
  "name": "demo",
  "description": "Jane Doe of Contoso tracks her clients: a start-up scan over her Inbox and Sent Items backlog, new mail arriving, a reply sent, a logged mail edited, a phone call logged and a letter written from the Zintra toolbar, then Outlook quits.",
  "outlook": {
    "version": "11.0.0.8312"
  },
  "start": "2026-01-05T09:00:00",
  "profile": {
    "user": {
      "name": "Jane Doe",
      "smtp": "jane.doe@contoso.com",
      "exchange": "/O=CONTOSO/OU=FIRST ADMINISTRATIVE GROUP/CN=RECIPIENTS/CN=JDOE"
    },
    "directory": [
      {
        "name": "Tom Baker",
        "smtp": "tom.baker@contoso.com",
        "exchange": "/O=CONTOSO/OU=FIRST ADMINISTRATIVE GROUP/CN=RECIPIENTS/CN=TBAKER"
      },
      {
        "name": "Priya Nair",
        "smtp": "priya.nair@contoso.com",
        "exchange": "/O=CONTOSO/OU=FIRST ADMINISTRATIVE GROUP/CN=RECIPIENTS/CN=PNAIR"
      },
      {
        "name": "Voice Mail",
        "smtp": "voicemail@contoso.com"
      }
    ],
    "stores": [
      {
        "kind": "mailbox",
        "folders": [
          {
            "name": "Inbox",
            "items": [
              {
                "id": "in1",
                "subject": "Quote 4471",
                "from": "Ann Lee <ann.lee@fabrikam.com>",
                "to": [
                  "Jane Doe <jane.doe@contoso.com>"
                ],
                "time": "2026-01-02T08:00:00",
                "body": "Dear Jane,\n\nQuote 4471.\n\nKind regards,\nAnn Lee"
              },
              {
                "id": "in2",
                "subject": "Delivery schedule for March",
                "from": "David Novak <david.novak@litware.com>",
                "to": [
                  "Jane Doe <jane.doe@contoso.com>"
                ],
                "time": "2026-01-03T09:07:00",
                "body": "Dear Jane,\n\nDelivery schedule for March.\n\nKind regards,\nDavid Novak"
              },
              {
                "id": "in3",
                "subject": "Re: invoice 2291",
                "from": "Grace Kim <grace.kim@fabrikam.com>",
                "to": [
                  "Jane Doe <jane.doe@contoso.com>"
                ],
                "time": "2026-01-04T10:14:00",
                "body": "Dear Jane,\n\nRe: invoice 2291.\n\nKind regards,\nGrace Kim",
                "cc": [
                  "Elena Berg <elena.berg@tailspintoys.com>"
                ]
              },
              {
                "id": "in4",
                "subject": "Meeting notes",
                "from": "Jonas Weber <jonas.weber@litware.com>",
                "to": [
                  "Jane Doe <jane.doe@contoso.com>"
                ],
                "time": "2026-01-02T11:21:00",
                "body": "Dear Jane,\n\nMeeting notes.\n\nKind regards,\nJonas Weber"
              },
              {
                "id": "in5",
                "subject": "Contract renewal",
                "from": "Mona Rossi <mona.rossi@fabrikam.com>",
                "to": [
                  "Jane Doe <jane.doe@contoso.com>"
                ],
                "time": "2026-01-03T12:28:00",
                "body": "Dear Jane,\n\nContract renewal.\n\nKind regards,\nMona Rossi"
              },
              {
                "id": "in6",
                "subject": "Price list 2026",
                "from": "Paula Santos <paula.santos@litware.com>",
                "to": [
                  "Jane Doe <jane.doe@contoso.com>"
                ],
                "time": "2026-01-04T13:35:00",
                "body": "Dear Jane,\n\nPrice list 2026.\n\nKind regards,\nPaula Santos"
              },
              {
                "id": "in7",
                "subject": "Re: samples",
                "from": "Sami Aziz <sami.aziz@fabrikam.com>",
                "to": [
                  "Jane Doe <jane.doe@contoso.com>"
                ],
                "time": "2026-01-02T14:42:00",
                "body": "Dear Jane,\n\nRe: samples.\n\nKind regards,\nSami Aziz"
              },
              {
                "id": "in8",
                "subject": "Order 5532 confirmed",
                "from": "Vera Jansen <vera.jansen@litware.com>",
                "to": [
                  "Jane Doe <jane.doe@contoso.com>"
                ],
                "time": "2026-01-03T15:49:00",
                "body": "Dear Jane,\n\nOrder 5532 confirmed.\n\nKind regards,\nVera Jansen"
              },
              {
                "id": "in9",
                "subject": "Question about the warranty",
                "from": "Yusuf Demir <yusuf.demir@fabrikam.com>",
                "to": [
                  "Jane Doe <jane.doe@contoso.com>"
                ],
                "time": "2026-01-04T16:56:00",
                "body": "Dear Jane,\n\nQuestion about the warranty.\n\nKind regards,\nYusuf Demir"
              },
              {
                "id": "in10",
                "subject": "Visit next week",
                "from": "Bruno Conti <bruno.conti@litware.com>",
                "to": [
                  "Jane Doe <jane.doe@contoso.com>"
                ],
                "time": "2026-01-02T08:03:00",
                "body": "Dear Jane,\n\nVisit next week.\n\nKind regards,\nBruno Conti"
              },
              {
                "id": "in11",
                "subject": "Re: Quote 4471",
                "from": "Carla Silva <carla.silva@adatum.com>",
                "to": [
                  "Jane Doe <jane.doe@contoso.com>"
                ],
                "time": "2026-01-03T09:10:00",
                "body": "Dear Jane,\n\nRe: Quote 4471.\n\nKind regards,\nCarla Silva"
              },
              {
                "id": "in12",
                "subject": "Catalogue request",
                "from": "Farid Haddad <farid.haddad@cohowinery.com>",
                "to": [
                  "Jane Doe <jane.doe@contoso.com>"
                ],
                "time": "2026-01-04T10:17:00",
                "body": "Dear Jane,\n\nCatalogue request.\n\nKind regards,\nFarid Haddad"
              },
              {
                "id": "in13",
                "subject": "Payment received",
                "from": "Ines Costa <ines.costa@adatum.com>",
                "to": [
                  "Jane Doe <jane.doe@contoso.com>"
                ],
                "time": "2026-01-02T11:24:00",
                "body": "Dear Jane,\n\nPayment received.\n\nKind regards,\nInes Costa"
              },
              {
                "id": "in14",
                "subject": "Updated drawings",
                "from": "Luis Garcia <luis.garcia@cohowinery.com>",
                "to": [
                  "Jane Doe <jane.doe@contoso.com>"
                ],
                "time": "2026-01-03T12:31:00",
                "body": "Dear Jane,\n\nUpdated drawings.\n\nKind regards,\nLuis Garcia"
              },
              {
                "id": "in15",
                "subject": "Re: delivery address",
                "from": "Oskar Holm <oskar.holm@adatum.com>",
                "to": [
                  "Jane Doe <jane.doe@contoso.com>"
                ],
                "time": "2026-01-04T13:38:00",
                "body": "Dear Jane,\n\nRe: delivery address.\n\nKind regards,\nOskar Holm"
              },
              {
                "id": "in-private",
                "subject": "Personal: dinner on Friday",
                "from": "Farid Haddad <farid.haddad@cohowinery.com>",
                "to": [
                  "Jane Doe <jane.doe@contoso.com>"
                ],
                "time": "2026-01-03T19:05:00"
              },
              {
                "id": "in-stranger1",
                "subject": "Special offer on printer cartridges",
                "from": "Deals <deals@bargain-ink.example>",
                "to": [
                  "Jane Doe <jane.doe@contoso.com>"
                ],
                "time": "2026-01-03T07:12:00"
              },
              {
                "id": "in-stranger2",
                "subject": "Conference invitation",
                "from": "Events Team <events@expo-world.example>",
                "to": [
                  "Jane Doe <jane.doe@contoso.com>"
                ],
                "time": "2026-01-04T11:40:00"
              },
              {
                "id": "in-colleague1",
                "subject": "Team lunch",
                "from": {
                  "name": "Tom Baker",
                  "smtp": "tom.baker@contoso.com",
                  "exchange": "/O=CONTOSO/OU=FIRST ADMINISTRATIVE GROUP/CN=RECIPIENTS/CN=TBAKER"
                },
                "to": [
                  "Jane Doe <jane.doe@contoso.com>"
                ],
                "time": "2026-01-04T12:00:00"
              },
              {
                "id": "in-colleague2",
                "subject": "Fwd: Quote 4471",
                "from": {
                  "name": "Priya Nair",
                  "smtp": "priya.nair@contoso.com",
                  "exchange": "/O=CONTOSO/OU=FIRST ADMINISTRATIVE GROUP/CN=RECIPIENTS/CN=PNAIR"
                },
                "to": [
                  "Jane Doe <jane.doe@contoso.com>",
                  "Ann Lee <ann.lee@fabrikam.com>"
                ],
                "time": "2026-01-04T14:30:00"
              },
              {
                "id": "in-confidential",
                "subject": "Confidential: merger plans",
                "from": "Ben Okafor <ben.okafor@northwind.com>",
                "to": [
                  "Jane Doe <jane.doe@contoso.com>"
                ],
                "sensitivity": "confidential",
                "time": "2026-01-04T16:02:00"
              },
              {
                "id": "in-voicemail",
                "subject": "Voice mail from +44 20 7946 0000 (0:42)",
                "message_class": "IPM.Note.AppliedVoiceTechnology.VoiceMail",
                "from": "Voice Mail <voicemail@contoso.com>",
                "to": [
                  "Jane Doe <jane.doe@contoso.com>"
                ],
                "time": "2026-01-04T17:45:00",
                "attachments": [
                  {
                    "name": "voicemail.wav",
                    "content_type": "audio/wav",
                    "size": 337000
                  }
                ]
              },
              {
                "id": "in-wingtip",
                "subject": "Wingtip order 881",
                "from": "Sales Desk <sales@wingtiptoys.com>",
                "to": [
                  "Jane Doe <jane.doe@contoso.com>"
                ],
                "time": "2026-01-05T08:15:00",
                "attachments": [
                  {
                    "name": "order-881.pdf",
                    "content_type": "application/pdf",
                    "size": 48213
                  }
                ]
              }
            ]
          },
          {
            "name": "Sent Items",
            "items": [
              {
                "id": "out1",
                "subject": "Re: Quote 4471",
                "from": "Jane Doe <jane.doe@contoso.com>",
                "to": [
                  "Carla Silva <carla.silva@adatum.com>"
                ],
                "time": "2026-01-02T10:00:00"
              },
              {
                "id": "out2",
                "subject": "Delivery dates",
                "from": "Jane Doe <jane.doe@contoso.com>",
                "to": [
                  "Hugo Moreau <hugo.moreau@northwind.com>"
                ],
                "time": "2026-01-03T11:11:00"
              },
              {
                "id": "out3",
                "subject": "Thank you",
                "from": "Jane Doe <jane.doe@contoso.com>",
                "to": [
                  "Mona Rossi <mona.rossi@fabrikam.com>"
                ],
                "time": "2026-01-04T12:22:00"
              },
              {
                "id": "out4",
                "subject": "Re: Contract renewal",
                "from": "Jane Doe <jane.doe@contoso.com>",
                "to": [
                  "Rosa Diaz <rosa.diaz@cohowinery.com>"
                ],
                "time": "2026-01-02T13:33:00"
              },
              {
                "id": "out5",
                "subject": "Samples sent",
                "from": "Jane Doe <jane.doe@contoso.com>",
                "to": [
                  "Wim Visser <wim.visser@tailspintoys.com>"
                ],
                "time": "2026-01-03T14:44:00"
              },
              {
                "id": "out6",
                "subject": "Re: Price list 2026",
                "from": "Jane Doe <jane.doe@contoso.com>",
                "to": [
                  "Bruno Conti <bruno.conti@litware.com>"
                ],
                "time": "2026-01-04T15:55:00"
              },
              {
                "id": "out7",
                "subject": "Agenda for our visit",
                "from": "Jane Doe <jane.doe@contoso.com>",
                "to": [
                  "Elena Berg <elena.berg@tailspintoys.com>"
                ],
                "time": "2026-01-02T16:06:00"
              },
              {
                "id": "out8",
                "subject": "Invoice 2291 corrected",
                "from": "Jane Doe <jane.doe@contoso.com>",
                "to": [
                  "Jonas Weber <jonas.weber@litware.com>"
                ],
                "time": "2026-01-03T17:17:00"
              },
              {
                "id": "out-internal",
                "subject": "Notes from the customer call",
                "from": "Jane Doe <jane.doe@contoso.com>",
                "to": [
                  {
                    "name": "Tom Baker",
                    "smtp": "tom.baker@contoso.com",
                    "exchange": "/O=CONTOSO/OU=FIRST ADMINISTRATIVE GROUP/CN=RECIPIENTS/CN=TBAKER"
                  }
                ],
                "time": "2026-01-04T15:00:00"
              }
            ]
          },
          {
            "name": "Clients",
            "type": "contact",
            "items": [
              {
                "id": "c1",
                "full_name": "Ann Lee",
                "emails": [
                  "ann.lee@fabrikam.com"
                ],
                "company": "Fabrikam",
                "categories": "Customers"
              },
              {
                "id": "c2",
                "full_name": "Ben Okafor",
                "emails": [
                  "ben.okafor@northwind.com",
                  "bokafor@mail.northwind.com"
                ],
                "company": "Northwind Traders",
                "categories": "Customers"
              },
              {
                "id": "c3",
                "full_name": "Carla Silva",
                "emails": [
                  "carla.silva@adatum.com"
                ],
                "company": "Adatum",
                "categories": "Suppliers"
              },
              {
                "id": "c4",
                "full_name": "David Novak",
                "emails": [
                  "david.novak@litware.com",
                  "david@novak-consulting.com"
                ],
                "company": "Litware",
                "categories": "Customers"
              },
              {
                "id": "c5",
                "full_name": "Elena Berg",
                "emails": [
                  "elena.berg@tailspintoys.com"
                ],
                "company": "Tailspin Toys",
                "categories": "Customers"
              },
              {
                "id": "c6",
                "full_name": "Farid Haddad",
                "emails": [
                  "farid.haddad@cohowinery.com",
                  "fhaddad@mail.cohowinery.com"
                ],
                "company": "Coho Winery",
                "categories": "Personal",
                "sensitivity": "private"
              },
              {
                "id": "c7",
                "full_name": "Grace Kim",
                "emails": [
                  "grace.kim@fabrikam.com"
                ],
                "company": "Fabrikam",
                "categories": "Customers"
              },
              {
                "id": "c8",
                "full_name": "Hugo Moreau",
                "emails": [
                  "hugo.moreau@northwind.com"
                ],
                "company": "Northwind Traders",
                "categories": "Customers"
              },
              {
                "id": "c9",
                "full_name": "Ines Costa",
                "emails": [
                  "ines.costa@adatum.com"
                ],
                "company": "Adatum",
                "categories": "Suppliers"
              },
              {
                "id": "c10",
                "full_name": "Jonas Weber",
                "emails": [
                  "jonas.weber@litware.com",
                  "jweber@mail.litware.com"
                ],
                "company": "Litware",
                "categories": "Customers"
              },
              {
                "id": "c11",
                "full_name": "Kira Ito",
                "emails": [
                  "kira.ito@tailspintoys.com",
                  "kira@ito-consulting.com"
                ],
                "company": "Tailspin Toys",
                "categories": "Customers"
              },
              {
                "id": "c12",
                "full_name": "Luis Garcia",
                "emails": [
                  "luis.garcia@cohowinery.com"
                ],
                "company": "Coho Winery",
                "categories": "Suppliers"
              },
              {
                "id": "c13",
                "full_name": "Mona Rossi",
                "emails": [
                  "mona.rossi@fabrikam.com"
                ],
                "company": "Fabrikam",
                "categories": "Customers"
              },
              {
                "id": "c14",
                "full_name": "Nils Lind",
                "emails": [
                  "nils.lind@northwind.com",
                  "nlind@mail.northwind.com"
                ],
                "company": "Northwind Traders",
                "categories": "Customers"
              },
              {
                "id": "c15",
                "full_name": "Oskar Holm",
                "emails": [
                  "oskar.holm@adatum.com"
                ],
                "company": "Adatum",
                "categories": "Suppliers"
              },
              {
                "id": "c16",
                "full_name": "Paula Santos",
                "emails": [
                  "paula.santos@litware.com"
                ],
                "company": "Litware",
                "categories": "Customers"
              },
              {
                "id": "c17",
                "full_name": "Quinn Byrne",
                "emails": [
                  "quinn.byrne@tailspintoys.com"
                ],
                "company": "Tailspin Toys",
                "categories": "Customers"
              },
              {
                "id": "c18",
                "full_name": "Rosa Diaz",
                "emails": [
                  "rosa.diaz@cohowinery.com",
                  "rdiaz@mail.cohowinery.com",
                  "rosa@diaz-consulting.com"
                ],
                "company": "Coho Winery",
                "categories": "Suppliers"
              },
              {
                "id": "c19",
                "full_name": "Sami Aziz",
                "emails": [
                  "sami.aziz@fabrikam.com"
                ],
                "company": "Fabrikam",
                "categories": "Customers"
              },
              {
                "id": "c20",
                "full_name": "Tara Patel",
                "emails": [
                  "tara.patel@northwind.com"
                ],
                "company": "Northwind Traders",
                "categories": "Customers"
              },
              {
                "id": "c21",
                "full_name": "Umar Khan",
                "emails": [
                  "umar.khan@adatum.com"
                ],
                "company": "Adatum",
                "categories": "Suppliers"
              },
              {
                "id": "c22",
                "full_name": "Vera Jansen",
                "emails": [
                  "vera.jansen@litware.com",
                  "vjansen@mail.litware.com"
                ],
                "company": "Litware",
                "categories": "Customers"
              },
              {
                "id": "c23",
                "full_name": "Wim Visser",
                "emails": [
                  "wim.visser@tailspintoys.com"
                ],
                "company": "Tailspin Toys",
                "categories": "Customers"
              },
              {
                "id": "c24",
                "full_name": "Xenia Petrov",
                "emails": [
                  "xenia.petrov@cohowinery.com"
                ],
                "company": "Coho Winery",
                "categories": "Suppliers"
              },
              {
                "id": "c25",
                "full_name": "Yusuf Demir",
                "emails": [
                  "yusuf.demir@fabrikam.com",
                  "yusuf@demir-consulting.com"
                ],
                "company": "Fabrikam",
                "categories": "Customers"
              },
              {
                "id": "c26",
                "full_name": "Zoe Clarke",
                "emails": [
                  "zoe.clarke@northwind.com",
                  "zclarke@mail.northwind.com"
                ],
                "company": "Northwind Traders",
                "categories": "Customers"
              },
              {
                "id": "c27",
                "full_name": "Alma Nunes",
                "emails": [
                  "alma.nunes@adatum.com"
                ],
                "company": "Adatum",
                "categories": "Suppliers"
              },
              {
                "id": "c28",
                "full_name": "Bruno Conti",
                "emails": [
                  "bruno.conti@litware.com"
                ],
                "company": "Litware",
                "categories": "Customers"
              },
              {
                "id": "c-wingtip",
                "full_name": "Wingtip Toys (any address)",
                "emails": [
                  "*@wingtiptoys.com"
                ],
                "company": "Wingtip Toys",
                "categories": "Customers"
              }
            ]
          },
          {
            "name": "Client Journal",
            "type": "journal"
          }
        ]
      },
      {
        "kind": "public",
        "folders": [
          {
            "name": "Shared Journal",
            "type": "journal"
          }
        ]
      }
    ]
  },
  "foldersets": [
    {
      "contacts": "Clients",
      "journal": "Client Journal",
      "shared_journal": "Public Folders/Shared Journal"
    }
  ],
  "timeline": [
    {
      "do": "start",
      "windows": "explorer"
    },
    {
      "do": "wait",
      "for": "2m",
      "note": "the start-up scan of Inbox and Sent Items"
    },
    {
      "do": "deliver",
      "item": {
        "id": "new1",
        "subject": "Re: Delivery schedule for March",
        "from": "David Novak <david.novak@litware.com>",
        "to": [
          "Jane Doe <jane.doe@contoso.com>"
        ]
      }
    },
    {
      "do": "deliver",
      "item": {
        "id": "new2",
        "subject": "Your newsletter subscription",
        "from": "News <news@daily-digest.example>",
        "to": [
          "Jane Doe <jane.doe@contoso.com>"
        ]
      }
    },
    {
      "do": "deliver",
      "item": {
        "id": "new3",
        "subject": "Wingtip order 882",
        "from": "Orders <orders@wingtiptoys.com>",
        "to": [
          "Jane Doe <jane.doe@contoso.com>"
        ]
      }
    },
    {
      "do": "send",
      "item": {
        "id": "new4",
        "subject": "Re: Delivery schedule for March",
        "to": [
          "David Novak <david.novak@litware.com>"
        ],
        "body": "Thanks, the dates suit us."
      }
    },
    {
      "do": "wait",
      "for": "2m"
    },
    {
      "do": "change",
      "target": "in1",
      "set": {
        "subject": "Quote 4471 (revised)"
      }
    },
    {
      "do": "click",
      "button": "phone-call",
      "selection": [
        "c1"
      ],
      "fill": {
        "subject": "Call with Ann about quote 4471",
        "body": "She will confirm the order on Friday."
      },
      "note": "Jane logs a phone call with Ann Lee from the Zintra toolbar"
    },
    {
      "do": "click",
      "button": "letter",
      "selection": [
        "c1"
      ],
      "letter": "Thank you for your order of 12 March.",
      "note": "and writes her a letter, which the template files in Outlook"
    },
    {
      "do": "wait",
      "for": "1m"
    },
    {
      "do": "quit"
    }
  ]
}
)json";
// clang-format on

}  // namespace zintra::simtool
